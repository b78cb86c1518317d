#include "apps/cli/telling/ErrorReport.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <new>

#include "apps/cli/files/DrawingFiles.h"
#include "editing/EditError.h"
#include "formats/FileError.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::cli {

namespace {

/// The number behind a word in "line 3, column 7"; 0 when there is none.
int numberBehind(const std::string& text, std::string_view word) {
    const std::size_t at = text.find(word);
    int number = 0;
    if (at != std::string::npos)
        std::from_chars(text.data() + at + word.size(), text.data() + text.size(), number);
    return number;
}

ErrorReport ofDrawing(ErrorCode code, const DrawingError& error) {
    const std::string file = error.file() == kStandardInput ? kStandardStream : error.file();
    ErrorReport report{.code = code, .message = error.what(), .file = file, .line = error.line()};
    if (!error.place().starts_with("line ")) {
        report.place = error.place();
        return report;
    }
    report.line = numberBehind(error.place(), "line ");
    report.column = static_cast<std::size_t>(numberBehind(error.place(), "column "));
    return report;
}

ErrorCode codeOf(const FileError& error) {
    return error.work() == FileError::Work::reading ? ErrorCode::unreadableFile : ErrorCode::notWritten;
}

}  // namespace

ErrorReport reportOfCurrent() {
    try {
        throw;
    } catch (const ReportedError& error) {
        return error.report();
    } catch (const UsageError& error) {
        return {.code = ErrorCode::usage, .message = error.what()};
    } catch (const FileError& error) {
        return ofDrawing(codeOf(error), error);
    } catch (const DrawingError& error) {
        return ofDrawing(ErrorCode::badDrawing, error);
    } catch (const UnsolvableDocument& error) {
        return {.code = ErrorCode::badDrawing, .message = error.what()};
    } catch (const EditError& error) {
        return {.code = ErrorCode::impossibleEdit, .message = error.what()};
    } catch (const std::bad_alloc&) {
        return {.code = ErrorCode::outOfMemory, .message = "there is not enough memory"};
    } catch (const std::exception& error) {
        return {.code = ErrorCode::failed, .message = error.what()};
    } catch (...) {
        return {.code = ErrorCode::failed, .message = "the program failed"};
    }
}

ErrorCode codeFor(RefusalCause cause) {
    switch (cause) {
        case RefusalCause::text:
            return ErrorCode::badEdit;
        case RefusalCause::word:
            return ErrorCode::wrongWord;
        case RefusalCause::geometry:
            return ErrorCode::impossibleEdit;
        case RefusalCause::constraints:
            return ErrorCode::constraintsInTheWay;
        case RefusalCause::memory:
            return ErrorCode::outOfMemory;
        case RefusalCause::failure:
            break;
    }
    return ErrorCode::failed;
}

nlohmann::ordered_json errorJson(const ErrorReport& report) {
    nlohmann::ordered_json json{{"code", codeName(report.code)}, {"message", report.message}};
    if (!report.file.empty())
        json["file"] = report.file;
    if (report.line > 0)
        json["line"] = report.line;
    if (report.edit)
        json["edit"] = *report.edit;
    if (report.column > 0)
        json["column"] = report.column;
    if (!report.place.empty())
        json["place"] = report.place;
    if (!report.constraints.empty())
        json["constraints"] = report.constraints;
    if (report.howFar > 0.0)
        json["how_far"] = report.howFar;
    return json;
}

}  // namespace holdfast::cli
