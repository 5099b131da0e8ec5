#include "reader/ReaderViewFixture.h"
#include "support/Dice.h"

#include <QFile>
#include <QWheelEvent>

#include <map>

namespace Quillory {
namespace {

// A reader's life in random steps. What must hold: what is shown is the selected sheet, as a fresh rendering for the width
// gives it; what is not rendered again keeps its selection and its place; and a sheet that comes back as it was read shows
// the very line at its top that was there, whatever was laid out, dropped or resized between.
class ReaderLife : public ReaderViewTest {
protected:
    struct Left {
        TextAnchor anchor;
        double x = 0;
        TextWidths widths { 0 };
        double textSize = 0;
    };

    ReaderLife()
    {
        QFile structured(QStringLiteral(QUILLORY_GOLDEN_SHEETS "/../../../../resources/Starters/xcode.quillory.json"));
        write("keys.quillory.json", structured.open(QFile::ReadOnly) ? structured.readAll() : QByteArray());
        write("long.md", longSheet("long"));
        for (int number = 10; number < 27; ++number)
            write("short " + QByteArray::number(number) + ".md",
                "# Short " + QByteArray::number(number) + "\n\nlittle to read\n");
        QByteArray table = "\n\n|a|b|\n|-|-|\n";
        for (int row = 0; row < 200; ++row)
            table += "| row | " + QByteArray("é words ").repeated(row * 7 % 40) + " |\n";
        write("wide.md", longSheet("wide", 30) + table + "\n```\n" + QByteArray("x").repeated(150));
        connect();
    }

    void read(int row)
    {
        left[sheet().id] = { text.scrollAnchor(), text.scrollOrigin().x(), text.textWidths(), store.textSize };
        auto const before = sheet().id;
        if (auto const way = row - list.currentIndex().row(); std::abs(way) == 1 && text.selection().isEmpty())
            press(way > 0 ? Qt::Key_Right : Qt::Key_Left);
        else
            clickRow(row);
        auto const place = left.find(sheet().id);
        if (sheet().id == before)
            return;
        EXPECT_EQ(text.selection(), TextSelection());
        if (place == left.end())
            EXPECT_EQ(text.scrollOrigin(), QPointF());
        else if (place->second.widths == text.textWidths() && place->second.textSize == store.textSize)
            expectAt(place->second);
    }
    void expectAt(Left const& place)
    {
        EXPECT_EQ(text.scrollAnchor().location, place.anchor.location) << sheet().id.toStdString();
        EXPECT_NEAR(text.scrollAnchor().offset, place.anchor.offset, 1e-6) << sheet().id.toStdString();
        EXPECT_EQ(text.scrollOrigin().x(), text.constrained({ place.x, 0 }).x());
    }
    // What does not touch the text leaves the selection and the place.
    void expectKept(std::function<void()> const& step)
    {
        text.setSelection({ dice.below(string().size()), dice.below(string().size()) });
        auto const selection = text.selection();
        Left const place { text.scrollAnchor(), text.scrollOrigin().x() };
        step();
        settle();
        EXPECT_EQ(text.selection(), selection);
        expectAt(place);
    }
    // What renders the text anew keeps the place, but near the end, which is known only once it is laid out.
    void expectRendered(std::function<void()> const& step)
    {
        services.executor.settle(); // or heights that become exact move the place as well
        auto const before = text.constrained(text.scrollOrigin());
        text.setSelection({ 0, 1 });
        step();
        settle();
        auto const isNearEnd = before.y() + 2 * text.height() > text.contentSize().height();
        EXPECT_TRUE(isNearEnd || text.scrollOrigin() == text.constrained(before));
    }
    void expectTold(std::function<void()> const& step)
    {
        auto const before = text.scrollOrigin();
        step();
        EXPECT_TRUE(text.scrollOrigin() == before || store.scrollPositions.value(sheet().id) == text.scrollOrigin());
    }
    void resize()
    {
        auto const line = text.scrollAnchor().location;
        auto const height = [&] { return text.boundingRect({ line, 1 }).top() - text.scrollOrigin().y(); };
        auto const before = height();
        auto const wasAtTop = text.scrollOrigin().y() < ReaderTextView::inset;
        expectTold([&] { view.resize(650 + 213 * dice.below(5), 500); });
        auto const isAtEnd = text.scrollOrigin() == text.constrained(text.scrollOrigin() + QPointF(0, 1));
        EXPECT_TRUE(wasAtTop || isAtEnd || std::abs(height() - before) < 0.01) << height() << " after " << before;
    }

    static constexpr int wide = 18;

    std::vector<std::pair<char const*, std::function<void()>>> const steps {
        { "reads", [this] { read(dice.anyOf(std::array { 0, 1, wide })); } },
        { "reads another", [this] { read(dice.anyOf(std::array { 0, 1, wide })); } },
        { "reads any", [this] { read(dice.below(wide + 1)); } },
        { "reads all the short ones",
            [this] {
                for (int row = 2; row < wide; ++row)
                    read(row);
            } },
        { "scrolls",
            [this] {
                auto const size = text.contentSize();
                expectTold([&] {
                    text.setScrollOrigin({ size.width() * dice.below(3) / 2, size.height() * dice.below(101) / 100 });
                });
            } },
        { "turns the wheel",
            [this] {
                QWheelEvent wheel({ 50, 50 }, text.mapToGlobal(QPointF(50, 50)), {}, { 0, -120 }, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
                auto const before = text.scrollOrigin();
                expectTold([&] { QCoreApplication::sendEvent(&text, &wheel); });
                auto const isAtEnd = text.scrollOrigin() == text.constrained(before + QPointF(0, 60));
                EXPECT_TRUE(isAtEnd || text.scrollOrigin().y() > before.y() + 30) << "by lines, and not by points";
            } },
        { "resizes", [this] { resize(); } },
        { "changes the text size",
            [this] {
                expectRendered([this] {
                    store.setTextSize(std::clamp(store.textSize + (dice.oneIn(2) ? 1.0 : -1.0), 14.0, 17.0));
                });
            } },
        { "goes, comes, and is scanned again",
            [this] {
                expectKept([this] {
                    view.hide();
                    view.show();
                    store.setLearningModeEnabled(dice.oneIn(2));
                    store.reload();
                });
                EXPECT_EQ(text.learningModeEnabled(), store.learningModeEnabled);
            } },
        { "is broken and mended",
            [this] {
                auto const name = sheet().id.toUtf8();
                auto const readable = services.root.read("sheets/" + name);
                expectKept([&] { save(name, "\xFF"); });
                EXPECT_TRUE(label("caption").isVisible());
                expectKept([&] { save(name, readable); });
                EXPECT_FALSE(label("caption").isVisible());
            } },
        { "is saved with a line more",
            [this] {
                auto const name = sheet().id.toUtf8();
                if (!sheet().shortcuts)
                    expectRendered([&] { save(name, services.root.read("sheets/" + name) + "\n\nmore\n"); });
            } },
        { "becomes exact",
            [this] {
                auto const place = Left { text.scrollAnchor(), text.scrollOrigin().x() };
                services.executor.settle();
                expectAt(place);
            } },
    };

    Dice dice { 12 };
    std::map<QString, Left> left;
};

TEST_F(ReaderLife, What_is_shown_is_what_was_chosen_and_sheets_come_back_as_they_were_left)
{
    std::string taken;
    for (int number = 0; number < 400 && !HasFailure(); ++number) {
        auto const& [name, take] = dice.anyOf(steps);
        taken += name + ("; now " + sheet().id.toStdString()) + '\n';
        take();
        expectTheSelectedSheet();
    }
    EXPECT_FALSE(HasFailure()) << taken;

    clickRow(1);
    text.setScrollOrigin({ 0, 500 });
    text.setSelection({ 3, 8 });
    services.root.write("others/long.md", services.root.read("sheets/long.md"));
    store.connect(services.root.path("others"));
    services.executor.settle();
    EXPECT_EQ(text.scrollOrigin(), QPointF()) << "the same name and text, but another sheet";
    EXPECT_TRUE(text.selection().isEmpty());
}

}
}
