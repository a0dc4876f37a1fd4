#include "exchange/compound_file.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "exchange/xls_bytes.h"

namespace brenlow::exchange::xls {
namespace {

using bytes::get16;
using bytes::get32;

constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE, kFree = 0xFFFFFFFF;
constexpr std::string_view kMagic("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
constexpr std::size_t kMiniSector = 64;

// Thrown inside this file only, with the person's words; caught at its edge.
struct Damaged {
    std::string what;
};

class Container {
public:
    explicit Container(std::string_view f) : f_(f) {
        const std::uint16_t shift = get16(f, 30);
        if (shift != 9 && shift != 12) throw Damaged{"its sector size is not one Excel writes"};
        sector_ = std::size_t{1} << shift;
        if (f.size() < sector_) throw Damaged{"it is cut short"};
        // Whole sectors only: a sector cut off by the end of the file is not there.
        sectors_ = (f.size() - sector_) / sector_;
        load_fat();
    }

    // The bytes of a chain of sectors from `start`, `size` of them when it is given.
    std::string chain(std::uint32_t start, std::optional<std::uint64_t> size, const char* what) const {
        if (size && *size > f_.size()) throw Damaged{std::string(what) + " is larger than the file"};
        std::string out;
        std::vector<bool> seen(sectors_, false);
        for (std::uint32_t n = start; n != kEndOfChain;) {
            if (size && out.size() >= *size) break;
            if (n >= sectors_ || n >= fat_.size())
                throw Damaged{std::string(what) + " points past the end of the file"};
            if (seen[n]) throw Damaged{std::string("the chain of sectors of ") + what + " runs in a loop"};
            seen[n] = true;
            out.append(sector(n));
            n = fat_[n];
        }
        if (size) {
            if (out.size() < *size) throw Damaged{std::string(what) + " is cut short"};
            out.resize(static_cast<std::size_t>(*size));
        }
        return out;
    }

    // A stream below the cut-off size lives in the mini stream, in 64-byte sectors.
    std::string mini_chain(std::string_view mini_stream, const std::vector<std::uint32_t>& mini_fat,
                           std::uint32_t start, std::uint64_t size, const char* what) const {
        const std::size_t count = mini_stream.size() / kMiniSector;
        if (size > mini_stream.size()) throw Damaged{std::string(what) + " is larger than its container"};
        std::string out;
        std::vector<bool> seen(count, false);
        for (std::uint32_t n = start; out.size() < size;) {
            if (n == kEndOfChain) throw Damaged{std::string(what) + " is cut short"};
            if (n >= count || n >= mini_fat.size())
                throw Damaged{std::string(what) + " points past the end of its container"};
            if (seen[n]) throw Damaged{std::string("the chain of sectors of ") + what + " runs in a loop"};
            seen[n] = true;
            out.append(mini_stream.substr(n * kMiniSector, kMiniSector));
            n = mini_fat[n];
        }
        out.resize(static_cast<std::size_t>(size));
        return out;
    }

    // Allocation-table entries of the chain from `start` (the mini allocation table).
    std::vector<std::uint32_t> table(std::uint32_t start, const char* what) const {
        const std::string t = start == kEndOfChain || start == kFree ? std::string() : chain(start, {}, what);
        std::vector<std::uint32_t> out(t.size() / 4);
        for (std::size_t i = 0; i < out.size(); ++i) out[i] = get32(t, i * 4);
        return out;
    }

    std::size_t sector_size() const { return sector_; }

private:
    std::string_view sector(std::uint32_t n) const {
        return f_.substr((n + std::size_t{1}) * sector_, sector_);
    }

    void load_fat() {
        const std::uint32_t count = get32(f_, 44);
        if (count > sectors_) throw Damaged{"its allocation table is larger than the file"};
        std::vector<std::uint32_t> at;
        for (std::size_t i = 0; i < 109 && at.size() < count; ++i) at.push_back(get32(f_, 76 + i * 4));
        // Past 109 table sectors their numbers go on in a chain of extension sectors.
        std::vector<bool> seen(sectors_, false);
        const std::size_t per = sector_ / 4 - 1;
        for (std::uint32_t d = get32(f_, 68); at.size() < count;) {
            if (d >= sectors_) throw Damaged{"its allocation table is cut short"};
            if (seen[d]) throw Damaged{"the chain of its allocation table runs in a loop"};
            seen[d] = true;
            const std::string_view s = sector(d);
            for (std::size_t i = 0; i < per && at.size() < count; ++i) at.push_back(get32(s, i * 4));
            d = get32(s, per * 4);
        }
        fat_.reserve(count * (sector_ / 4));
        for (const auto n : at) {
            if (n >= sectors_) throw Damaged{"its allocation table points past the end of the file"};
            const std::string_view s = sector(n);
            for (std::size_t i = 0; i < sector_ / 4; ++i) fat_.push_back(get32(s, i * 4));
        }
    }

    std::string_view f_;
    std::size_t sector_ = 512;
    std::size_t sectors_ = 0;
    std::vector<std::uint32_t> fat_;
};

std::u16string entry_name(std::string_view e) {
    const std::size_t name_bytes = std::min<std::size_t>(get16(e, 64), 64);
    std::u16string name;
    for (std::size_t i = 0; i + 1 < name_bytes; i += 2) name.push_back(static_cast<char16_t>(get16(e, i)));
    while (!name.empty() && name.back() == 0) name.pop_back();
    return name;
}

}  // namespace

std::optional<std::string> workbook_stream(std::string_view f, std::string& damage) {
    damage.clear();
    if (f.size() < 8 || f.substr(0, 8) != kMagic) return std::nullopt;
    try {
        if (f.size() < 512) throw Damaged{"it is cut short"};
        const Container c(f);
        const std::string dir = c.chain(get32(f, 48), {}, "its directory");
        const bool wide = get16(f, 26) == 4;  // version 4 keeps a stream's size in 64 bits
        const auto size_of = [&](std::string_view e) -> std::uint64_t {
            const std::uint64_t low = get32(e, 120);
            return wide ? low | (static_cast<std::uint64_t>(get32(e, 124)) << 32) : low;
        };
        std::string_view root, book;
        for (std::size_t at = 0; at + 128 <= dir.size(); at += 128) {
            const std::string_view e = std::string_view(dir).substr(at, 128);
            if (at == 0 && e[66] == 5) root = e;
            const std::u16string name = entry_name(e);
            if (e[66] == 2 && (name == u"Workbook" || (name == u"Book" && book.empty()))) book = e;
        }
        if (book.empty()) throw Damaged{"it holds no workbook"};
        const std::uint64_t size = size_of(book);
        if (size >= get32(f, 56)) return c.chain(get32(book, 116), size, "the workbook");
        if (root.empty()) throw Damaged{"its directory has no root"};
        const std::string mini = c.chain(get32(root, 116), size_of(root), "the small streams");
        const auto mini_fat = c.table(get32(f, 60), "the small streams' table");
        return c.mini_chain(mini, mini_fat, get32(book, 116), size, "the workbook");
    } catch (const Damaged& d) {
        damage = "the file is damaged: " + d.what;
        return std::nullopt;
    }
}

}  // namespace brenlow::exchange::xls
