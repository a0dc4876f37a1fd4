#include "pdf_text.h"

#include <cstdio>
#include <memory>

namespace brenlow::test {

std::string command_output(const std::string& command) {
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    if (!pipe) return {};
    std::string out;
    char buf[4096];
    while (const std::size_t n = std::fread(buf, 1, sizeof buf, pipe.get())) out.append(buf, n);
    return out;
}

std::string pdf_text(const std::string& path, int page) {
    const std::string pages = page > 0 ? " -f " + std::to_string(page) + " -l " + std::to_string(page) : "";
    return command_output("pdftotext -layout" + pages + " '" + path + "' - 2>/dev/null");
}

std::string pdf_info(const std::string& path, int from, int to) {
    return command_output("pdfinfo -f " + std::to_string(from) + " -l " + std::to_string(to) + " '" + path +
                          "' 2>/dev/null");
}

bool have_pdf_tools() {
    return !command_output("command -v pdftotext && command -v pdfinfo").empty();
}

}  // namespace brenlow::test
