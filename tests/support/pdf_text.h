#pragma once
// What a PDF file says, read by poppler's own tools (pdftotext, pdfinfo) rather than
// by this program's code: the text of a page as laid out, and the document's facts.

#include <string>

namespace brenlow::test {

// Standard output of a shell command ("" when it cannot run).
std::string command_output(const std::string& command);
// The text of the PDF's page (1-based; 0 for every page), in its layout.
std::string pdf_text(const std::string& path, int page = 0);
// pdfinfo's report for the pages from..to (their sizes among it).
std::string pdf_info(const std::string& path, int from = 1, int to = 1);
// Whether poppler's tools are installed.
bool have_pdf_tools();

}  // namespace brenlow::test
