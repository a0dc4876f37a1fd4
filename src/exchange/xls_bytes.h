#pragma once
// Little-endian fields of the .xls file format, read with their bounds checked: a field
// past the end of its bytes reads as nil (the callers check sizes before they trust one).

#include <cstdint>
#include <cstring>
#include <string_view>

namespace brenlow::exchange::xls {

namespace records {
constexpr std::uint16_t kBof = 0x0809, kEof = 0x000A, kCodepage = 0x0042, kWindow1 = 0x003D;
constexpr std::uint16_t kFont = 0x0031, kFormat = 0x041E, kXf = 0x00E0, kStyle = 0x0293;
constexpr std::uint16_t kBoundSheet = 0x0085, kSst = 0x00FC, kExtSst = 0x00FF, kContinue = 0x003C;
constexpr std::uint16_t kRow = 0x0208;
constexpr std::uint16_t kDimensions = 0x0200, kColInfo = 0x007D, kWindow2 = 0x023E, kMerged = 0x00E5;
constexpr std::uint16_t kWriteAccess = 0x005C, kFilePass = 0x002F;
constexpr const char* kWriter = "Brenlow";
constexpr std::uint16_t kLabelSst = 0x00FD, kNumber = 0x0203, kBlank = 0x0201, kRk = 0x027E;
// Cells other programs write.
constexpr std::uint16_t kLabel = 0x0204, kBoolErr = 0x0205, kFormula = 0x0006, kMulRk = 0x00BD,
                        kMulBlank = 0x00BE, kRString = 0x00D6;
constexpr std::size_t kMaxBody = 8224;  // the longest record body the format allows
}  // namespace records

namespace bytes {

inline std::uint16_t get16(std::string_view s, std::size_t at) {
    if (at > s.size() || s.size() - at < 2) return 0;
    return static_cast<std::uint16_t>(static_cast<unsigned char>(s[at]) |
                                      (static_cast<unsigned char>(s[at + 1]) << 8));
}
inline std::uint32_t get32(std::string_view s, std::size_t at) {
    return get16(s, at) | (static_cast<std::uint32_t>(get16(s, at + 2)) << 16);
}
inline double get_double(std::string_view s, std::size_t at) {
    const std::uint64_t bits = get32(s, at) | (static_cast<std::uint64_t>(get32(s, at + 4)) << 32);
    double d;
    std::memcpy(&d, &bits, 8);
    return d;
}

}  // namespace bytes
}  // namespace brenlow::exchange::xls
