#include <cairo-pdf.h>
#include <cairo.h>

#include <memory>
#include <stdexcept>

#include "suite/output_file.h"
#include "suite/report.h"
#include "suite/report_pages.h"

namespace brenlow::Ostikreport {
namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

cairo_status_t append(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

void select_face(cairo_t* cr, const std::string& face, bool bold) {
    cairo_select_font_face(cr, face.c_str(), CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
}

}  // namespace

void write_pdf(const ReportDocument& doc, const std::string& path, suite::Existing existing) {
    const std::string face = report_face(doc.font_name);
    std::string pdf;
    {
        // The file is made in memory and written whole.
        Surface surface(cairo_pdf_surface_create_for_stream(append, &pdf, 842, 595), cairo_surface_destroy);
        cairo_pdf_surface_restrict_to_version(surface.get(), CAIRO_PDF_VERSION_1_4);
        Context cr(cairo_create(surface.get()), cairo_destroy);
        // Widths measured at 100 points and scaled: the face's own advances, not rounded ones.
        const auto width = [&](std::string_view text, bool bold) {
            select_face(cr.get(), face, bold);
            cairo_set_font_size(cr.get(), 100);
            cairo_text_extents_t e;
            const std::string s(text);
            cairo_text_extents(cr.get(), s.c_str(), &e);
            return e.x_advance / 100;
        };
        const auto pages = place_report(doc, width);
        for (const auto& page : pages) {
            cairo_pdf_surface_set_size(surface.get(), page.width, page.height);
            cairo_set_source_rgb(cr.get(), 0, 0, 0);
            cairo_set_line_width(cr.get(), 0.5);
            for (const auto& r : page.rules) {
                cairo_move_to(cr.get(), r.x1, r.y);
                cairo_line_to(cr.get(), r.x2, r.y);
            }
            cairo_stroke(cr.get());
            for (const auto& t : page.texts) {
                select_face(cr.get(), face, t.bold);
                cairo_set_font_size(cr.get(), page.font_size);
                cairo_move_to(cr.get(), t.x, t.y);
                cairo_show_text(cr.get(), t.text.c_str());
            }
            cairo_show_page(cr.get());
        }
        cairo_surface_finish(surface.get());
        if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
            throw std::runtime_error(std::string("The report could not be made: ") +
                                     cairo_status_to_string(cairo_surface_status(surface.get())));
    }
    suite::write_file_whole(path, pdf, existing);
}

}  // namespace brenlow::Ostikreport
