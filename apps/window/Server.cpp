#include "apps/window/Server.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <optional>
#include <stdexcept>
#include <thread>

#include "apps/window/Answers.h"
#include "apps/window/Assets.h"
#include "apps/window/DroppedFile.h"
#include "apps/window/Gate.h"
#include "apps/window/OpenDrawing.h"
#include "apps/window/Pace.h"
#include "apps/window/Tabs.h"
#include "document/text/DrawingError.h"

namespace holdfast::window {

namespace {

constexpr const char* kHere = "127.0.0.1";
constexpr const char* kJson = "application/json";
constexpr const char* kTab = "Holdfast-Tab";

/// Tabs wait for news on a thread each; a browser has up to six connections open besides.
constexpr std::size_t kThreads = Tabs::kMost + 12;

/// How long a tab waits before it is sent a sign of life, by which one that has gone is noticed.
constexpr std::chrono::milliseconds kHeartbeat{1000};

constexpr int kTooMany = 503, kTooOften = 429, kRefused = 400, kMissing = 404;  // statuses of HTTP, RFC 9110 section 15

/// Nothing from outside, nothing written in the page itself, and no other page may show this one.
constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

httplib::Headers headersOfAll() {
    return {{"Content-Security-Policy", kPolicy},
            {"X-Content-Type-Options", "nosniff"},
            {"Referrer-Policy", "no-referrer"},
            {"Cache-Control", "no-store"},
            {"Cross-Origin-Opener-Policy", "same-origin"},
            {"Cross-Origin-Resource-Policy", "same-origin"}};
}

/// A request that says two things at once counts as saying neither.
std::string onlyHeader(const httplib::Request& request, const char* name) {
    const std::size_t count = request.get_header_value_count(name);
    return count == 1 ? request.get_header_value(name) : std::string(count == 0 ? "" : "several");
}

Knock knockOf(const httplib::Request& request) {
    const std::string length = request.get_header_value("Content-Length");
    return {.method = request.method,
            .path = request.path,
            .host = onlyHeader(request, "Host"),
            .origin = onlyHeader(request, "Origin"),
            .contentType = onlyHeader(request, "Content-Type"),
            .contentEncoding = onlyHeader(request, "Content-Encoding"),
            .transferEncoding = onlyHeader(request, "Transfer-Encoding"),
            .site = onlyHeader(request, "Sec-Fetch-Site"),
            .length = static_cast<std::size_t>(std::strtoull(length.c_str(), nullptr, 10))};
}

/// The one member of a message that an edit comes in; nothing for a message of another form.
std::optional<std::string> editOf(const nlohmann::json& message) {
    if (!message.is_object() || message.size() != 1 || !message.contains("text") || !message["text"].is_string())
        return std::nullopt;
    return message["text"].get<std::string>();
}

std::optional<std::string> editIn(const std::string& body) {
    return editOf(nlohmann::json::parse(body, nullptr, false));
}

/// A pull, and the part of the drawing on the page: left, bottom, right, top. Nothing for a message of another form.
struct PullAsked {
    std::string text;
    Box seen = kEverywhere;
};

std::optional<PullAsked> pullIn(const std::string& body) {
    nlohmann::json message = nlohmann::json::parse(body, nullptr, false);
    if (!message.is_object() || !message.contains("seen")) {
        std::optional<std::string> text = editOf(message);
        return text ? std::optional(PullAsked{std::move(*text)}) : std::nullopt;
    }
    const nlohmann::json seen = message["seen"];
    message.erase("seen");
    std::optional<std::string> text = editOf(message);
    const auto isNumber = [](const nlohmann::json& each) { return each.is_number(); };
    if (!text || !seen.is_array() || seen.size() != 4 || !std::all_of(seen.begin(), seen.end(), isNumber))
        return std::nullopt;
    return PullAsked{std::move(*text),
                     {{seen[0].get<double>(), seen[1].get<double>()}, {seen[2].get<double>(), seen[3].get<double>()}}};
}

/// What is refused may not have been read to its end: the next request comes on another connection.
void refuse(httplib::Response& response, int status, const char* why) {
    response.status = status;
    response.set_header("Connection", "close");
    response.set_content(why, "text/plain; charset=utf-8");
}

void refuseHaste(httplib::Response& response) {
    response.set_header("Retry-After", "1");
    refuse(response, kTooOften, "too many requests in a second; nothing was done, ask again in a moment\n");
}

/// An answer as it is: the library would pack what it is given as a whole, which takes far longer than the way to a
/// browser on the same machine.
void give(httplib::Response& response, std::string text, const std::string& type) {
    const std::size_t length = text.size();
    if (length == 0)
        return response.set_content(text, type);
    response.set_content_provider(length, type,
                                  [text = std::move(text)](std::size_t at, std::size_t count, httplib::DataSink& sink) {
                                      return sink.write(text.data() + at, count);
                                  });
}

/// One line of an event stream, as the browser's EventSource reads it.
std::string eventOf(const Tabs::News& news) {
    return "data: " +
           (news.isOver ? std::string("over") : std::to_string(news.state) + " " + std::to_string(news.writes)) +
           "\n\n";
}

/// What a tab calls itself: in a header, or where a page cannot set one, behind the address. Who says nothing is a tab,
/// too. Nothing for what no page calls itself.
std::optional<std::string> tabOf(const httplib::Request& request) {
    constexpr std::size_t kLongest = 32;
    std::string tab = request.get_header_value(kTab);
    if (tab.empty())
        tab = request.get_param_value("tab");
    if (tab.size() > kLongest || tab.find_first_not_of("0123456789abcdef") != std::string::npos)
        return std::nullopt;
    return tab;
}

std::string keptText(const std::vector<Tabs::KeptEdits>& all) {
    Json list = Json::array();
    for (const Tabs::KeptEdits& each : all) {
        const auto time = std::chrono::file_clock::to_sys(each.written).time_since_epoch();
        Json json{{"name", each.path.filename().string()},
                  {"time", std::chrono::duration_cast<std::chrono::milliseconds>(time).count()},
                  {"isDropped", each.isDropped},
                  {"isOurs", each.user == Tabs::KeptEdits::User::asker},
                  {"isOpen", each.user == Tabs::KeptEdits::User::another}};
        if (each.edits)
            json["edits"] = *each.edits;
        if (each.differs)
            json["differs"] = *each.differs;
        list.push_back(std::move(json));
    }
    return textOf(list);
}

/// As many as people read.
std::string notesText(std::vector<std::string> notes) {
    constexpr std::size_t kMostNotes = 20;
    if (notes.size() > kMostNotes) {
        const std::size_t more = notes.size() - kMostNotes;
        notes.resize(kMostNotes);
        notes.push_back("and " + std::to_string(more) + " more");
    }
    return Json(notes).dump(-1, ' ', true, Json::error_handler_t::replace);
}

}  // namespace

struct Server::Inside {
    Tabs& tabs;
    httplib::Server server{};
    std::optional<Gate> gate{};
    Pace pace{};
    std::string address{};
    std::thread listening{};

    explicit Inside(Tabs& theTabs) : tabs(theTabs) {}

    void setUp() {
        server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
        server.set_tcp_nodelay(true);
        // As it comes the library would share the port with whoever asks for it.
        server.set_socket_options([](int socket) {
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        server.set_payload_max_length(Gate::kLargestFile);
        server.set_keep_alive_max_count(100000);  // a drag of an hour asks so often
        server.set_default_headers(headersOfAll());
        server.set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
            const int status = gate->refusal(knockOf(request));
            if (status != 0)
                refuse(response, status, "this address is for the page that holdfast opened\n");
            else if (pace.allows(request.get_header_value(kTab)))
                return httplib::Server::HandlerResponse::Unhandled;
            else
                refuseHaste(response);
            return httplib::Server::HandlerResponse::Handled;
        });
    }

    /// Which port is listened on is known before the first request can come.
    void listen(int port) {
        const int bound = port == 0 ? server.bind_to_any_port(kHere) : server.bind_to_port(kHere, port) ? port : -1;
        if (bound <= 0)
            throw std::runtime_error("port " + std::to_string(port) +
                                     " is taken, or not for this user; give another one with --port, or none");
        const std::string word = Gate::freshWord();
        gate.emplace(word, bound);
        address = "http://" + std::string(kHere) + ":" + std::to_string(bound) + gate->prefix();
        addNews();  // before the pages: they are looked for under any name
        addAnswers();
        addPages();
        listening = std::thread([this] { server.listen_after_bind(); });
    }

    void addPages() {
        server.Get(gate->prefix() + "([a-z0-9.-]*)", [](const httplib::Request& request, httplib::Response& response) {
            const std::string name = request.matches[1];
            const Asset* asset = assetNamed(name.empty() ? "index.html" : name);
            if (asset == nullptr)
                return refuse(response, kMissing, "there is no such page\n");
            give(response, std::string(asset->text), std::string(asset->type));
        });
        server.Get(gate->prefix() + "copy/([a-z.]+)",
                   [this](const httplib::Request& request, httplib::Response& response) {
                       const auto drawing = drawingOf(request, response);
                       if (!drawing)
                           return;
                       try {
                           std::optional<OpenDrawing::Copy> copy = drawing->copy(std::string(request.matches[1]));
                           if (!copy)
                               return refuse(response, kMissing, "there is no such copy\n");
                           give(response, std::move(copy->text), copy->type);
                           response.set_header("Content-Disposition", "attachment");
                       } catch (const DrawingError& failure) {
                           refuse(response, kRefused, failure.what());
                       }
                   });
    }

    /// Of the tab that asks; none when it was refused.
    std::shared_ptr<OpenDrawing> drawingOf(const httplib::Request& request, httplib::Response& response) {
        const std::optional<std::string> tab = tabOf(request);
        if (!tab) {
            refuse(response, kRefused, "no tab calls itself so\n");
            return nullptr;
        }
        std::shared_ptr<OpenDrawing> drawing = tabs.of(*tab);
        if (!drawing)
            refuse(response, kTooMany, "too many tabs show this drawing; close one of them\n");
        return drawing;
    }

    using Answer = std::function<std::string(OpenDrawing& drawing)>;
    using EditAnswer = std::function<std::string(OpenDrawing& drawing, const std::string& edit)>;

    void addGet(const char* name, Answer answer) {
        server.Get(gate->prefix() + "ask/" + name,
                   [this, answer = std::move(answer)](const httplib::Request& request, httplib::Response& response) {
                       if (const auto drawing = drawingOf(request, response))
                           give(response, answer(*drawing), kJson);
                   });
    }

    void addPost(const char* name, EditAnswer answer) {
        server.Post(gate->prefix() + "do/" + name,
                    [this, answer = std::move(answer)](const httplib::Request& request, httplib::Response& response) {
                        const std::optional<std::string> edit = editIn(request.body);
                        if (!edit)
                            return refuse(response, kRefused, "expected {\"text\": \"an edit\"}\n");
                        if (const auto drawing = drawingOf(request, response)) {
                            give(response, answer(*drawing, *edit), kJson);
                            tabs.tell(*tabOf(request), drawing->number());
                        }
                    });
    }

    void addAnswers() {
        using Edit = const std::string&;
        server.Get(gate->prefix() + "ask/language", [](const httplib::Request&, httplib::Response& response) {
            give(response, textOf(languageJson()), kJson);
        });
        addGet("state", [](OpenDrawing& drawing) { return drawing.state(); });
        addGet("freedom", [](OpenDrawing& drawing) { return drawing.freedom(); });
        addGet("behind", [](OpenDrawing& drawing) { return drawing.behind(); });
        addPost("edit", [](OpenDrawing& drawing, Edit edit) { return drawing.edit(edit); });
        addPost("follow", [](OpenDrawing& drawing, Edit edit) { return drawing.follow(edit); });
        addPost("try", [](OpenDrawing& drawing, Edit edit) { return drawing.trial(edit); });
        addPost("save", [this](OpenDrawing& drawing, Edit how) {
            std::string answer = drawing.save(how == "over");
            tabs.tellWritten();
            return answer;
        });
        addPost("discard", [](OpenDrawing& drawing, Edit) { return drawing.discard(); });
        addPost("back", [](OpenDrawing& drawing, Edit) { return drawing.goBack(); });
        addPull();
        addKept();
        addDrop();
        addSaveAs();
    }

    void addPull() {
        server.Post(gate->prefix() + "do/pull", [this](const httplib::Request& request, httplib::Response& response) {
            const std::optional<PullAsked> asked = pullIn(request.body);
            if (!asked)
                return refuse(response, kRefused, "expected {\"text\": \"an edit\", \"seen\": [0, 0, 9, 9]}\n");
            if (const auto drawing = drawingOf(request, response))
                give(response, drawing->pull(asked->text, asked->seen), kJson);
        });
    }

    /// Edits that are kept beside the file, whoever has made them; a tab goes on with some, or has them forgotten.
    void addKept() {
        server.Get(gate->prefix() + "ask/kept", [this](const httplib::Request& request, httplib::Response& response) {
            if (drawingOf(request, response))
                give(response, keptText(tabs.allKept(*tabOf(request))), kJson);
        });
        const auto add = [this](const char* name, std::string (Tabs::*work)(const std::string&, const std::string&)) {
            server.Post(gate->prefix() + "do/" + name,
                        [this, work](const httplib::Request& request, httplib::Response& response) {
                            const std::optional<std::string> kept = editIn(request.body);
                            if (!kept)
                                return refuse(response, kRefused, "expected {\"text\": \"a name of the list\"}\n");
                            if (!drawingOf(request, response))
                                return;
                            const std::string error = (tabs.*work)(*tabOf(request), *kept);
                            give(response, textOf({{"done", error.empty()}, {"error", error}}), kJson);
                            tabs.tellWritten();
                        });
        };
        add("kept", &Tabs::goOnWithKept);
        add("forget", &Tabs::forgetKept);
    }

    /// The bytes of a file for the browser to keep; what is lost in it stands in a header, as JSON in letters that
    /// headers may have.
    void addSaveAs() {
        server.Post(gate->prefix() + "do/saveas", [this](const httplib::Request& request, httplib::Response& response) {
            const std::optional<std::string> form = editIn(request.body);
            if (!form)
                return refuse(response, kRefused, "expected {\"text\": \"an ending\"}\n");
            const auto drawing = drawingOf(request, response);
            if (!drawing)
                return;
            try {
                GoneOut out = drawing->saveAs(*form);
                response.set_header("Holdfast-Notes", notesText(std::move(out.notes)));
                give(response, std::move(out.bytes), "application/octet-stream");
            } catch (const std::exception& failure) {
                refuse(response, kRefused, failure.what());
            }
        });
    }

    /// A file that was dropped comes as its bytes; its name and that of a sketch in it stand behind the address.
    void addDrop() {
        server.Post(gate->prefix() + std::string(Gate::kDrop),
                    [this](const httplib::Request& request, httplib::Response& response) {
                        const auto drawing = drawingOf(request, response);
                        if (!drawing)
                            return;
                        give(response,
                             drawing->takeDropped({.name = request.get_param_value("name"),
                                                   .bytes = request.body,
                                                   .sketch = request.get_param_value("sketch")}),
                             kJson);
                        tabs.tell(*tabOf(request), drawing->number());
                    });
    }

    /// A tab hears of every change, and we of its going.
    void addNews() {
        server.Get(gate->prefix() + "news", [this](const httplib::Request& request, httplib::Response& response) {
            if (!drawingOf(request, response))
                return;
            const std::string tab = *tabOf(request);
            if (!tabs.enter(tab))
                return refuse(response, kTooMany, "too many tabs show this drawing; close one of them\n");
            const auto known = std::make_shared<Tabs::News>();
            response.set_chunked_content_provider(
                "text/event-stream",
                [this, tab, known](std::size_t, httplib::DataSink& sink) { return send(sink, tab, *known); },
                [this, tab](bool) { tabs.leave(tab); });
        });
    }

    bool send(httplib::DataSink& sink, const std::string& tab, Tabs::News& known) {
        const Tabs::News news = tabs.wait(tab, known, kHeartbeat);
        const std::string line = news == known ? std::string(":\n\n") : eventOf(news);
        known = news;
        if (!sink.is_writable() || !sink.write(line.data(), line.size()))
            return false;
        if (news.isOver)
            sink.done();
        return true;
    }
};

Server::Server(Tabs& tabs, int port) : m_inside(std::make_unique<Inside>(tabs)) {
    m_inside->setUp();
    m_inside->listen(port);
}

Server::~Server() {
    m_inside->tabs.close();
    m_inside->server.stop();
    if (m_inside->listening.joinable())
        m_inside->listening.join();
}

std::string Server::address() const {
    return m_inside->address;
}

}  // namespace holdfast::window
