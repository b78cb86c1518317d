#include "apps/forms/PdfPage.h"

#include <cairo-pdf.h>
#include <dlfcn.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <memory>

#include "formats/FileError.h"
#include "report/picture/Markup.h"

namespace holdfast::forms {

namespace {

#ifdef __APPLE__
constexpr const char* kLibrary = "librsvg-2.2.dylib";
#else
constexpr const char* kLibrary = "librsvg-2.so.2";
#endif
constexpr double kPointsPerPixel = 72.0 / 96.0;
constexpr double kMetresPerPixel = 0.0254 / 96.0;
constexpr double kLargest = 14400.0;  // points: the largest side of a page (ISO 32000-1, annex C.2)

[[noreturn]] void refuse(std::string found, std::string expected) {
    throw FileError(FileError::Work::writing, "the PDF page", std::move(found), std::move(expected));
}

/// What draws pictures, with the libraries that it brings along. They are loaded for the first page: linked in, these
/// thirty libraries would take as long as all else does whenever the program starts.
class PageLibrary {
public:
    PageLibrary() : m_library(::dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL)) {
        if (m_library == nullptr)
            refuse(std::string("no ") + kLibrary + ", which draws it",
                   "the library librsvg (Debian's package librsvg2-2), or a name that ends in .svg");
    }

    template <class Function>
    Function* find(const char* name) const {
        void* found = ::dlsym(m_library, name);
        if (found == nullptr)
            refuse(std::string("no ") + name + " in " + kLibrary, "librsvg 2.52 or later");
        return reinterpret_cast<Function*>(found);
    }

private:
    void* m_library;  // stays loaded: what it keeps is freed by nobody
};

struct PageFunctions {
    PageLibrary library;

// Each under its own name, with the type that its header gives it.
#define HOLDFAST_FOUND(name) decltype(::name)* name = library.find<decltype(::name)>(#name)
    HOLDFAST_FOUND(g_error_free);
    HOLDFAST_FOUND(g_free);
    HOLDFAST_FOUND(g_memory_input_stream_new_from_data);
    HOLDFAST_FOUND(g_object_unref);
    HOLDFAST_FOUND(g_utf8_make_valid);
    HOLDFAST_FOUND(rsvg_handle_get_intrinsic_size_in_pixels);
    HOLDFAST_FOUND(rsvg_handle_new_from_stream_sync);
    HOLDFAST_FOUND(rsvg_handle_render_document);
    HOLDFAST_FOUND(rsvg_handle_set_dpi);
    HOLDFAST_FOUND(cairo_create);
    HOLDFAST_FOUND(cairo_destroy);
    HOLDFAST_FOUND(cairo_pdf_surface_create_for_stream);
    HOLDFAST_FOUND(cairo_pdf_surface_set_metadata);
    HOLDFAST_FOUND(cairo_scale);
    HOLDFAST_FOUND(cairo_status_to_string);
    HOLDFAST_FOUND(cairo_surface_destroy);
    HOLDFAST_FOUND(cairo_surface_finish);
    HOLDFAST_FOUND(cairo_surface_status);
#undef HOLDFAST_FOUND
};

const PageFunctions& functions() {
    static const PageFunctions found;
    return found;
}

/// Freed by a function of the libraries.
template <class T, class Free>
std::unique_ptr<T, Free> owned(T* what, Free free) {
    return {what, free};
}

cairo_status_t append(void* text, const unsigned char* bytes, unsigned int count) noexcept {
    try {
        static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), count);
        return CAIRO_STATUS_SUCCESS;
    } catch (...) {
        return CAIRO_STATUS_NO_MEMORY;
    }
}

class PageWriter {
public:
    PageWriter(const std::string& picture, const std::string& title) : m_title(title) {
        const auto stream =
            owned(m_f.g_memory_input_stream_new_from_data(picture.data(), static_cast<gssize>(picture.size()), nullptr),
                  m_f.g_object_unref);
        GError* fault = nullptr;
        // Without a limit for the length of one path, which in a large drawing is that of thousands of entities.
        m_picture =
            m_f.rsvg_handle_new_from_stream_sync(stream.get(), nullptr, RSVG_HANDLE_FLAG_UNLIMITED, nullptr, &fault);
        if (m_picture == nullptr)
            refuseFor(fault);
        m_f.rsvg_handle_set_dpi(m_picture, 96.0);
    }
    ~PageWriter() { m_f.g_object_unref(m_picture); }
    PageWriter(const PageWriter&) = delete;
    PageWriter& operator=(const PageWriter&) = delete;

    std::string page() const {
        std::string bytes;
        double width = 0.0, height = 0.0;
        if (!m_f.rsvg_handle_get_intrinsic_size_in_pixels(m_picture, &width, &height))
            refuse("a picture without width and height", "both, in lengths");
        if (std::max(width, height) * kPointsPerPixel > kLargest)
            refuse("a picture of " + report::measure(width * kMetresPerPixel) + " m by " +
                       report::measure(height * kMetresPerPixel) + " m in true size",
                   "5.08 m at most, as large as a page can be; \"holdfast show\" draws it smaller");
        const auto surface = owned(
            m_f.cairo_pdf_surface_create_for_stream(append, &bytes, width * kPointsPerPixel, height * kPointsPerPixel),
            m_f.cairo_surface_destroy);
        label(surface.get());
        draw(surface.get(), {0.0, 0.0, width, height});
        m_f.cairo_surface_finish(surface.get());
        if (const cairo_status_t status = m_f.cairo_surface_status(surface.get()); status != CAIRO_STATUS_SUCCESS)
            refuse(m_f.cairo_status_to_string(status), "a picture that can be drawn");
        return bytes;
    }

private:
    /// The drawing's name, and no date.
    void label(cairo_surface_t* surface) const {
        const auto title =
            owned(m_f.g_utf8_make_valid(m_title.data(), static_cast<gssize>(m_title.size())), m_f.g_free);
        m_f.cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_TITLE, title.get());
        m_f.cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_CREATE_DATE, nullptr);
    }

    void draw(cairo_surface_t* surface, const RsvgRectangle& area) const {
        const auto pen = owned(m_f.cairo_create(surface), m_f.cairo_destroy);
        m_f.cairo_scale(pen.get(), kPointsPerPixel, kPointsPerPixel);
        GError* fault = nullptr;
        if (!m_f.rsvg_handle_render_document(m_picture, pen.get(), &area, &fault))
            refuseFor(fault);
    }

    [[noreturn]] void refuseFor(GError* fault) const {
        const auto told = owned(fault, m_f.g_error_free);
        refuse(told->message, "a picture that can be drawn");
    }

    const PageFunctions& m_f = functions();
    const std::string& m_title;
    RsvgHandle* m_picture = nullptr;
};

}  // namespace

std::string pdfPage(const std::string& picture, const std::string& title) {
    return PageWriter(picture, title).page();
}

}  // namespace holdfast::forms

#ifdef HOLDFAST_SANITIZED
// What the library of types keeps for the next page stays its own to the end of the program. These are the sanitizer's
// names: NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_options() {
    return "print_suppressions=0";
}
// NOLINTEND(bugprone-reserved-identifier)
#endif
