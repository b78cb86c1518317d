#include "formats/fcstd/FcstdArchive.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>

#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"

namespace holdfast::formats {
namespace {

constexpr const char* kText = "Document.xml";
/// About fifty times what the largest documents have, and little enough to be held several times.
constexpr zip_uint64_t kLongest = 64U << 20U;

[[noreturn]] void fail(const std::string& file, std::string found, std::string expected) {
    throw DrawingError(file, {"", std::move(found), std::move(expected)});
}

[[noreturn]] void failWhole(const std::string& file, const std::string& reason) {
    fail(file, "no sound archive (" + reason + ")", "a document of FreeCAD (.FCStd), which is a zip archive");
}

/// An archive in memory, closed without a change unless it is finished.
class Archive {
public:
    Archive(std::string_view bytes, const std::string& file) : m_file(file) {
        zip_error_t error;
        zip_error_init(&error);
        m_source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
        m_archive = m_source == nullptr ? nullptr : zip_open_from_source(m_source, 0, &error);
        const std::string reason = m_archive == nullptr ? zip_error_strerror(&error) : "";
        zip_error_fini(&error);
        if (m_archive != nullptr) {
            zip_source_keep(m_source);  // the archive's own share goes with it
            return;
        }
        zip_source_free(m_source);
        failWhole(m_file, reason);
    }
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    ~Archive() {
        if (m_archive != nullptr)
            zip_discard(m_archive);
        zip_source_free(m_source);
    }

    /// Nothing is unpacked to a place that a name says; who would do so is warned.
    void checkNames() const {
        const zip_int64_t count = zip_get_num_entries(m_archive, 0);
        for (zip_int64_t i = 0; i < count; ++i) {
            const char* name = zip_get_name(m_archive, static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
            if (name == nullptr || leadsOut(name))
                fail(m_file, "an entry called " + inQuotes(name == nullptr ? "" : name) + ", which leads out of it",
                     "an archive whose names stay inside");
        }
    }

    zip_uint64_t textEntry() const {
        const zip_int64_t found = zip_name_locate(m_archive, kText, ZIP_FL_ENC_RAW);
        if (found < 0)
            fail(m_file, "an archive without an entry Document.xml", "a document of FreeCAD (.FCStd)");
        return static_cast<zip_uint64_t>(found);
    }

    zip_stat_t factsOf(zip_uint64_t entry) const {
        zip_stat_t facts;
        zip_stat_init(&facts);
        if (zip_stat_index(m_archive, entry, 0, &facts) != 0 || (facts.valid & ZIP_STAT_SIZE) == 0)
            failWhole(m_file, reason());
        return facts;
    }

    std::string read(zip_uint64_t entry) const {
        const zip_stat_t facts = factsOf(entry);
        if ((facts.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && facts.encryption_method != ZIP_EM_NONE)
            fail(m_file, "a document in cipher", "one that can be read");
        if (facts.size > kLongest)
            failLength("says that it is " + std::to_string(facts.size >> 20U) + " MB long");
        const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> opened(zip_fopen_index(m_archive, entry, 0),
                                                                       &zip_fclose);
        if (opened == nullptr)
            failWhole(m_file, reason());
        std::string text;
        text.reserve(facts.size);
        std::array<char, 65536> buffer{};
        for (;;) {
            const zip_int64_t count = zip_fread(opened.get(), buffer.data(), buffer.size());
            if (count < 0)
                failWhole(m_file, zip_file_strerror(opened.get()));
            if (count == 0)
                return text;
            text.append(buffer.data(), static_cast<std::size_t>(count));
            if (text.size() > kLongest)
                failLength("is longer than it says");
        }
    }

    /// Packed in the same way and of the same age, so that nothing but the text tells the archives apart.
    void replace(zip_uint64_t entry, std::string_view text) {
        const zip_stat_t facts = factsOf(entry);
        zip_source_t* source = zip_source_buffer(m_archive, text.data(), text.size(), 0);
        if (source == nullptr)
            failWhole(m_file, reason());
        if (zip_file_replace(m_archive, entry, source, 0) != 0) {
            zip_source_free(source);
            failWhole(m_file, reason());
        }
        const bool isStored = (facts.valid & ZIP_STAT_COMP_METHOD) != 0 && facts.comp_method == ZIP_CM_STORE;
        zip_set_file_compression(m_archive, entry, isStored ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0);
        if ((facts.valid & ZIP_STAT_MTIME) != 0)
            zip_file_set_mtime(m_archive, entry, facts.mtime, 0);
    }

    std::string finished() {
        if (zip_close(m_archive) != 0)
            failWhole(m_file, reason());
        m_archive = nullptr;
        if (zip_source_open(m_source) != 0)
            failWhole(m_file, zip_error_strerror(zip_source_error(m_source)));
        std::string bytes;
        std::array<char, 65536> buffer{};
        zip_int64_t count = 0;
        while ((count = zip_source_read(m_source, buffer.data(), buffer.size())) > 0)
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        zip_source_close(m_source);
        return bytes;
    }

private:
    static bool leadsOut(std::string_view name) {
        if (name.empty() || name.front() == '/' || name.find('\\') != std::string_view::npos ||
            name.find(':') != std::string_view::npos)
            return true;
        return ("/" + std::string(name) + "/").find("/../") != std::string::npos;
    }

    std::string reason() const { return zip_error_strerror(zip_get_error(m_archive)); }

    [[noreturn]] void failLength(const std::string& what) const {
        fail(m_file, "an entry Document.xml that " + what, "one of at most " + std::to_string(kLongest >> 20U) + " MB");
    }

    const std::string& m_file;
    zip_source_t* m_source = nullptr;
    zip_t* m_archive = nullptr;
};

}  // namespace

std::string documentTextOf(std::string_view archive, const std::string& file) {
    const Archive opened(archive, file);
    opened.checkNames();
    return opened.read(opened.textEntry());
}

std::string withDocumentText(std::string_view archive, std::string_view text, const std::string& file) {
    Archive opened(archive, file);
    opened.replace(opened.textEntry(), text);
    return opened.finished();
}

}  // namespace holdfast::formats
