#include "SearchJson.h"
#include "SheetJson.h"

#include "app/sandbox/ServeAsWorker.h"
#include "library/LibraryLoad.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/worker/WorkerPool.h"

#include <QStringList>

#include <cstdio>
#include <iostream>
#include <optional>

namespace {

using namespace Quillory;

constexpr int cannotDo = 2;
constexpr auto usage = "usage: quillory-inspect FOLDER [--sheet ID] [--render WIDTH TEXTSIZE] [--only-rendered] "
                       "[--search FILE]";

struct Request {
    QString folder;
    std::optional<QString> sheet;
    std::optional<Page> page;
    bool onlyRendered = false;
    std::optional<QString> searchFile;
};

std::optional<Request> parse(QStringList arguments)
{
    Request request;
    bool isGood = true;
    auto const next = [&] { return arguments.isEmpty() ? (isGood = false, QString()) : arguments.takeFirst(); };
    auto const number = [&] {
        bool isNumber = false;
        auto const value = next().toDouble(&isNumber);
        isGood = isGood && isNumber && value > 0;
        return value;
    };
    while (!arguments.isEmpty()) {
        auto const argument = arguments.takeFirst();
        if (argument == QLatin1StringView("--sheet")) {
            request.sheet = next();
        } else if (argument == QLatin1StringView("--render")) {
            auto const width = number();
            request.page = Page { width, number() };
        } else if (argument == QLatin1StringView("--only-rendered")) {
            request.onlyRendered = true;
        } else if (argument == QLatin1StringView("--search")) {
            request.searchFile = next();
        } else if (request.folder.isEmpty() && !argument.startsWith(QLatin1StringView("--"))) {
            request.folder = argument;
        } else {
            return std::nullopt;
        }
    }
    isGood = isGood && (!request.onlyRendered || (request.sheet && request.page && !request.searchFile));
    return isGood && !request.folder.isEmpty() ? std::optional(request) : std::nullopt;
}

// Loads again until nothing is under way: each sheet is then read, or past its time.
std::expected<QList<Sheet>, SystemError> loaded(QString const& folder)
{
    PosixFileSystem const files;
    WorkerPool sandbox;
    LibraryLoad load { .files = files, .sandbox = sandbox, .folder = folder };
    while (true) {
        auto now = load.run();
        if (!now)
            return std::unexpected(now.error());
        load.previous = std::move(now->sheets);
        load.earlier = std::make_shared<LoadMemory>(std::move(now->memory));
        if (!load.earlier->isUnderWay())
            return load.previous;
    }
}

void writeSheets(JsonWriter& json, QList<Sheet> const& sheets, Request const& request, QStringList const& queries)
{
    json.beginObject();
    json.key(u"sheets");
    json.beginArray();
    for (auto const& sheet : sheets) {
        if (!request.sheet || sheet.id == *request.sheet)
            writeSheet(json, sheet, request.page);
    }
    json.endArray();
    if (request.searchFile)
        writeSearches(json, sheets, queries);
    json.endObject();
}

int complain(QString const& sentence)
{
    std::cerr << "quillory-inspect: " << sentence.toStdString() << '\n';
    return cannotDo;
}

}

int main(int argc, char* argv[])
{
    if (auto const exitCode = serveAsWorker(argc, argv))
        return *exitCode;
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    auto const request = parse(arguments);
    if (!request) {
        std::cerr << usage << '\n';
        return cannotDo;
    }
    auto const queries = request->searchFile ? readQueries(*request->searchFile)
                                             : std::expected<QStringList, QString>();
    if (!queries)
        return complain(queries.error());
    auto const sheets = loaded(request->folder);
    if (!sheets)
        return complain(
            QStringLiteral("can't list %1: %2").arg(request->folder, sheets.error().localizedDescription()));

    JsonWriter json;
    if (request->onlyRendered) {
        auto const* sheet = findSheet(*sheets, *request->sheet);
        sheet ? writeRendering(json, *sheet, *request->page) : json.null();
    } else {
        writeSheets(json, *sheets, *request, *queries);
    }
    std::fwrite(json.bytes().constData(), 1, static_cast<std::size_t>(json.bytes().size()), stdout);
    return std::fputc('\n', stdout) == '\n' && std::fflush(stdout) == 0 ? 0 : 1;
}
