#include "SampleSheets.h"

#include <QByteArrayList>

#include <cstdlib>

namespace Quillory {

QByteArray ordinarySheet(qsizetype size)
{
    QByteArray sheet = "# Sheet\n\nWhat one forgets, in the order of need.\n\n";
    for (int section = 1; sheet.size() < size; ++section) {
        auto const number = QByteArray::number(section);
        sheet += "## Task " + number + "\n\nRun `tool --verbose` first, then *look* at **what** it says.\n"
            + "See [the manual](https://example.org/" + number + ") -- \"it depends\"...\n\n"
            + "```sh\ntool start --port 80" + number + " | tee log\ntool stop\n```\n\n"
            + "- [x] check the `config`\n- [ ] restart ~~twice~~ once\n  1. nested, with `code`\n  2. and more\n\n"
            + "| Key | What it does |\n|---|:--|\n| `Ctrl+" + number + "` | goes to line " + number
            + " |\n| `g g` | first line |\n| `G` | last line |\n\n> A note about task " + number + ".\n\n";
    }
    return sheet;
}

ShortcutSheet largestStructuredSheet()
{
    QByteArrayList sections;
    auto const steps = QByteArrayList(2, R"({"modifiers":["shift","command"],"key":"k"})").join(',');
    auto const shortcuts = QByteArrayList(2, R"({"steps":[)" + steps + "]}").join(',');
    for (int section = 0; section < 100; ++section) {
        QByteArrayList entries;
        for (int entry = 0; entry < 20; ++entry) {
            auto const id = QByteArray::number(section) + '.' + QByteArray::number(entry);
            entries.append(R"({"id":")" + id + R"(","title":"Does what entry )" + id + R"( says","text":")"
                + (entry % 4 == 0 ? "With a hint after it." : "") + R"(","shortcuts":[)" + shortcuts + "]}");
        }
        auto const id = QByteArray::number(section);
        sections.append(
            R"({"id":")" + id + R"(","title":"Section )" + id + R"(","entries":[)" + entries.join(',') + "]}");
    }
    auto sheet = ShortcutSheet::decode(
        R"({"schemaVersion":1,"title":"Largest","sections":[)" + sections.join(',') + "]}");
    if (!sheet)
        std::abort();
    return *sheet;
}

}
