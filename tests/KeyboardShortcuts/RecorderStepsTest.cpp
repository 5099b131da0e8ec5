#include "KeyboardShortcuts/RecorderSteps.h"

#include "support/FakeHotKeys.h"
#include "support/FakeKeyboardLayout.h"
#include "support/ManualExecutor.h"
#include "support/MemoryUserDefaults.h"
#include "support/ShortcutsOnFakes.h"
#include "support/Test.h"

#include <map>

namespace Quillory {
namespace {

using enum ModifierFlags;

// Writes down what it is asked for, and gives the keyboard up and takes it as a field does.
struct WrittenField final : RecorderField {
    void refresh() override { }
    void startMonitor() override { log << u"record"_s; }
    void stopMonitor() override { log << u"stop"_s; }
    void giveUpFocus() override { steps->focusLost(); }
    void takeFocus() override { steps->focusGained(); }
    void beep() override { log << u"beep"_s; }
    void showAlert(Alert const& alert) override
    {
        log << alert.message.section(u' ', 0, 1) + (alert.buttons == Alert::Buttons::ok ? u"!"_s : u"?"_s);
    }

    QStringList log;
    RecorderSteps* steps = nullptr;
};

struct DesktopsKeys final : SystemShortcuts {
    std::vector<SymbolicHotKey> symbolicHotKeys() const override
    {
        return { { 37, control | option }, { 15, control | option }, { 111, none } };
    }
};

class RecorderStepsTest : public Test {
protected:
    RecorderStepsTest()
    {
        field.steps = &steps;
        using enum HotKeys::Refusal::Reason;
        hotKeys.refusals = { { { 38, control | option }, taken }, { { 15, control | option }, taken },
            { { 1, control | option }, unknownKey } };
        steps.validateShortcut = [](Shortcut const& shortcut) {
            return shortcut.carbonKeyCode == 7 ? std::expected<void, QString>(std::unexpect, u"Not this"_s)
                                               : std::expected<void, QString>();
        };
        line.shortcuts.onKeyDown(name, [] { });
        line.shortcuts.setShortcut(stored, name);
        steps.windowDidBecomeKey();
    }

    // "ctrl+alt+K" goes down, or one of the words for everything else that happens to a field.
    void happen(QString const& event)
    {
        std::map<QString, std::function<void()>> const events {
            { u"focus"_s, [&] { EXPECT_TRUE(steps.focusGained()); } },
            { u"blur"_s, [&] { steps.focusLost(); } },
            { u"clear"_s, [&] { steps.clear(); } },
            { u"clickInside"_s, [&] { steps.mouseWentUp(RecorderSteps::Where::inside); } },
            { u"clickOutside"_s, [&] { steps.mouseWentUp(RecorderSteps::Where::outside); } },
            { u"windowGoes"_s, [&] { steps.windowDidResignKey(); } },
            { u"windowComes"_s, [&] { steps.windowDidBecomeKey(); } },
            { u"ok"_s, [&] { steps.alertClosed(RecorderSteps::AlertAnswer::refuse); } },
            { u"force"_s, [&] { steps.alertClosed(RecorderSteps::AlertAnswer::force); } },
        };
        if (auto const known = events.find(event); known != events.end())
            known->second();
        else if (steps.keyWentDown(strokeOf(event)) == RecorderSteps::Answer::passOn)
            field.log << u"pass"_s;
    }

    static KeyStroke strokeOf(QString const& chord)
    {
        static std::map<QString, std::uint16_t> const keys { { u"A"_s, 0 }, { u"S"_s, 1 }, { u"X"_s, 7 }, { u"F"_s, 3 },
            { u"J"_s, 38 }, { u"K"_s, 40 }, { u"L"_s, 37 }, { u"R"_s, 15 }, { u"F5"_s, 96 }, { u"F12"_s, 111 },
            { u"Tab"_s, 48 }, { u"Esc"_s, 53 }, { u"Back"_s, 51 }, { u"Del"_s, 117 }, { u"Up"_s, 126 },
            { u"keypad5"_s, 87 } };
        static std::map<QString, ModifierFlags> const modifiers { { u"ctrl"_s, control }, { u"alt"_s, option },
            { u"shift"_s, shift }, { u"super"_s, command }, { u"caps"_s, capsLock }, { u"fn"_s, function } };
        KeyStroke stroke { .modifiers = none };
        for (auto const& part : chord.split(u'+')) {
            if (auto const modifier = modifiers.find(part); modifier != modifiers.end())
                stroke.modifiers = stroke.modifiers.value_or(none) | modifier->second;
            else if (part == u"altGr"_s)
                stroke.modifiers = std::nullopt;
            else if (auto const key = keys.find(part); key != keys.end())
                stroke.keyCode = key->second;
            else if (part == u"modifier"_s)
                stroke.kind = KeyStroke::Kind::modifier;
            else
                EXPECT_EQ(part, u"media"_s);
        }
        return stroke;
    }

    MemoryUserDefaults defaults;
    FakeHotKeys hotKeys;
    ManualExecutor executor;
    ShortcutsOnFakes line { defaults, hotKeys, executor };
    FakeKeyboardLayout layout { { { 8, u"c"_s }, { 3, u"f"_s }, { 40, u"k"_s } } };
    DesktopsKeys const system;
    RecorderSteps::Services const services { line.shortcuts, line.center, line.notifications, layout, system,
        [this](Shortcut const& shortcut) { return shortcut.description(layout); },
        [] { return std::vector<MenuItem> { { u"Find"_s, u"f"_s, control, {} } }; } };
    ShortcutName const name = ShortcutName::toggleQuillory();
    Shortcut const stored { 40, Shortcut::carbonModifiersOf(control | option) };
    WrittenField field;
    RecorderSteps steps { services, name, field };
};

TEST_F(RecorderStepsTest, Each_event_has_its_effects_and_what_is_refused_changes_nothing)
{
    struct Row {
        QString events;
        QString effects;
        std::optional<Shortcut> after;
    };
    auto const with = [](std::int64_t key, ModifierFlags flags) {
        return Shortcut { key, Shortcut::carbonModifiersOf(flags) };
    };
    auto const controlOption = control | option;
    for (auto const& [events, effects, after] : std::initializer_list<Row> {
             { u"ctrl+alt+A"_s, u"pass"_s, stored },
             { u"focus ctrl+alt+A"_s, u"record stop"_s, with(0, controlOption) },
             { u"focus modifier modifier+super clickInside focus"_s, u"record"_s, stored },
             { u"focus clickOutside ctrl+alt+A"_s, u"record stop pass"_s, stored },
             { u"focus Esc"_s, u"record stop"_s, stored },
             { u"focus caps+Esc"_s, u"record stop"_s, stored },
             { u"focus ctrl+Esc"_s, u"record stop"_s, with(53, control) },
             { u"focus Tab"_s, u"record stop pass"_s, stored },
             { u"focus shift+Tab"_s, u"record stop pass"_s, stored },
             { u"focus super+Tab"_s, u"record stop"_s, with(48, command) },
             { u"focus Back"_s, u"record stop"_s, {} },
             { u"focus Del"_s, u"record stop"_s, {} },
             { u"focus clear"_s, u"record stop"_s, {} },
             { u"clear"_s, u""_s, {} },
             { u"focus shift+Back"_s, u"record beep"_s, stored },
             { u"focus A"_s, u"record beep"_s, stored },
             { u"focus shift+A"_s, u"record beep"_s, stored },
             { u"focus keypad5"_s, u"record beep"_s, stored },
             { u"focus ctrl+keypad5"_s, u"record stop"_s, with(87, control) },
             { u"focus media ctrl+media"_s, u"record beep beep"_s, stored },
             { u"focus altGr+A"_s, u"record beep"_s, stored },
             { u"focus altGr+Esc altGr+Back"_s, u"record beep beep"_s, stored },
             { u"focus shift+F5"_s, u"record stop"_s, with(96, shift) },
             { u"focus fn+Up"_s, u"record stop"_s, with(126, none) },
             { u"focus F12"_s, u"record stop"_s, with(111, none) },
             { u"focus ctrl+alt+X ok"_s, u"record stop Not this! record"_s, stored },
             { u"focus ctrl+alt+J ok"_s, u"record stop Another program! record"_s, stored },
             { u"focus ctrl+alt+S ok"_s, u"record stop This shortcut! record"_s, stored },
             { u"focus ctrl+alt+L ok"_s, u"record stop Your desktop? record"_s, stored },
             { u"focus ctrl+alt+L force"_s, u"record stop Your desktop?"_s, with(37, controlOption) },
             { u"focus ctrl+alt+R ok"_s, u"record stop Your desktop! record"_s, stored },
             { u"focus ctrl+alt+L ok ctrl+alt+A ok force"_s, u"record stop Your desktop? record stop"_s,
                 with(0, controlOption) },
             { u"focus windowGoes ctrl+alt+A"_s, u"record stop pass"_s, stored },
             { u"focus windowGoes windowComes focus"_s, u"record stop record"_s, stored },
         }) {
        SCOPED_TRACE(events.toStdString());
        steps.windowDidBecomeKey();
        line.shortcuts.setShortcut(stored, name);
        field.log.clear();
        for (auto const& event : events.split(u' '))
            happen(event);
        EXPECT_EQ(field.log.join(u' '), effects);
        EXPECT_EQ(line.shortcuts.getShortcut(name), after);
        EXPECT_EQ(line.center.paused() == HotKeyCenter::Pause::on, steps.isRecording());
        steps.focusLost();
    }
}

TEST_F(RecorderStepsTest, A_policy_blocks_warns_or_allows_and_only_the_programs_own_menu_is_asked_about_news)
{
    using enum ConflictBehavior;
    struct Row {
        ConflictPolicy policy;
        QString key;
        QString effects;
    };
    for (auto const& [policy, key, effects] : std::initializer_list<Row> {
             { {}, u"ctrl+F"_s, u"record stop Quillory itself!"_s },
             { { .menuItem = warn }, u"ctrl+F"_s, u"record stop Quillory itself?"_s },
             { { .menuItem = allow }, u"ctrl+F"_s, u"record stop"_s },
             { { .systemShortcut = block }, u"ctrl+alt+L"_s, u"record stop Your desktop!"_s },
             { { .systemShortcut = allow }, u"ctrl+alt+L"_s, u"record stop"_s },
             { { .disallowed = warn }, u"ctrl+alt+S"_s, u"record stop This shortcut?"_s },
             { { .disallowed = allow }, u"ctrl+alt+S"_s, u"record stop"_s },
         }) {
        SCOPED_TRACE(effects.toStdString());
        line.shortcuts.setShortcut(stored, name);
        field.log.clear();
        steps.conflictPolicy = policy;
        happen(u"focus"_s);
        happen(key);
        EXPECT_EQ(field.log.join(u' '), effects);
        happen(u"ok"_s);
        happen(u"blur"_s);
    }
    steps.conflictPolicy = {};
    line.shortcuts.setShortcut(Shortcut { 3, Shortcut::carbonModifiersOf(control) }, name);
    happen(u"focus"_s);
    happen(u"ctrl+F"_s);
    EXPECT_FALSE(steps.isRecording()) << "it holds that one already";
}

TEST_F(RecorderStepsTest, Two_recorders_of_one_name_show_the_same_and_only_one_records)
{
    struct Refreshed final : RecorderField {
        void refresh() override { shown = steps->stringValue(); }
        void startMonitor() override { }
        void stopMonitor() override { }
        void giveUpFocus() override { }
        void takeFocus() override { }
        void beep() override { }
        void showAlert(Alert const&) override { }
        QString shown;
        RecorderSteps* steps = nullptr;
    } second;
    std::vector<bool> active;
    auto const notices = line.notifications.observe(RecorderSteps::recorderActiveStatusDidChange(),
        [&](Notification const& notice) { active.push_back(std::any_cast<bool>(notice.userInfo.at(u"isActive"_s))); });
    {
        RecorderSteps other(services, name, second);
        second.steps = &other;
        EXPECT_FALSE(other.focusGained()) << "its window is not in front";
        happen(u"focus"_s);
        EXPECT_EQ(steps.placeholder(), u"Press shortcut…"_s);
        EXPECT_THAT(hotKeys.registered(), IsEmpty());
        happen(u"shift+F5"_s);
        EXPECT_EQ(second.shown, u"⇧F5"_s);
        EXPECT_THAT(hotKeys.registered(), ElementsAre(FakeHotKeys::Combination { 96, shift }));
        happen(u"clear"_s);
        EXPECT_EQ(second.shown, u""_s);
        line.shortcuts.setShortcut(stored, ShortcutName::peekQuillory());
        EXPECT_EQ(second.shown, u""_s);
        other.windowDidBecomeKey();
        other.focusGained();
    }
    EXPECT_THAT(active, ElementsAre(true, false, true, false)) << "one that goes while it records counts as left";
    EXPECT_EQ(line.center.paused(), HotKeyCenter::Pause::off);
}

}
}
