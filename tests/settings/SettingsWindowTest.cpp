#include "settings/SettingsWindow.h"

#include "reader/BarButton.h"
#include "settings/SettingsPlace.h"
#include "settings/SettingsView.h"
#include "settings/StartOffer.h"
#include "support/SettingsOnFakes.h"
#include "support/Test.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QTest>

#include <functional>

namespace Quillory {
namespace {

class SettingsWindowTest : public Test {
protected:
    SettingsWindowTest()
    {
        services.root.write("sheets/a.md", "# Alpha\n");
        services.root.write("sheets/b.md", "# Beta\n");
    }

    void connect()
    {
        store.connect(services.root.path("sheets"));
        services.executor.settle();
    }
    void open()
    {
        window.bringToFront();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    // Every text that can be read now, or that a button bears.
    QStringList shown() { return shown(window); }
    QStringList shown(QWidget const& of) const
    {
        services.executor.settle();
        QStringList texts;
        for (auto const* const label : of.findChildren<QLabel*>()) {
            if (label->isVisible())
                texts << label->text();
        }
        for (auto const* const button : of.findChildren<QAbstractButton*>()) {
            if (button->isVisible())
                texts << button->text() << button->accessibleName();
        }
        return texts;
    }
    template<typename Widget = QAbstractButton>
    Widget& named(QString const& name)
    {
        for (auto* const widget : window.findChildren<Widget*>()) {
            if (widget->isVisible() && (widget->accessibleName() == name || widget->objectName() == name))
                return *widget;
        }
        throw std::runtime_error(name.toStdString());
    }

    SettingsOnFakes desk;
    FakeLibraryServices& services = desk.services;
    LibraryStore& store = desk.store;
    SettingsWindow window { desk.settings() };
};

TEST_F(SettingsWindowTest, Each_section_shows_what_holds_and_nothing_else)
{
    auto const sameShortcuts
        = u"Choose different shortcuts for toggle and peek. Hold to peek is inactive while they match."_s;
    auto const gestureIsOff
        = u"Choose a gesture above to see the steps and set up access. Off keeps modifier gestures disabled."_s;
    auto const allowed = u"Keyboard monitoring is allowed"_s, needed = u"Setup needed: allow Input Monitoring"_s;
    auto const noPins = u"Pin a sheet in the reader to give it its own menu-bar icon."_s;
    Shortcut const shortcut { 40, 6144 };
    struct Row {
        char const* change;
        std::function<void()> make;
        QStringList shown;
        QStringList hidden;
    };
    open();
    for (auto const& [change, make, present, absent] : std::initializer_list<Row> {
             { "at first", [] {},
                 { u"No folder connected"_s, gestureIsOff, noPins, u"Text size: 16"_s, u"Version 1.2"_s },
                 { sameShortcuts, allowed, needed, u"How to use it"_s, u"Timing and troubleshooting"_s } },
             { "a folder", [&] { connect(); }, { u"Connected folder: sheets"_s }, { u"No folder connected"_s } },
             { "one shortcut", [&] { desk.line.shortcuts.setShortcut(shortcut, ShortcutName::toggleQuillory()); }, {},
                 { sameShortcuts } },
             { "the same twice", [&] { desk.line.shortcuts.setShortcut(shortcut, ShortcutName::peekQuillory()); },
                 { sameShortcuts }, {} },
             { "one cleared", [&] { desk.line.shortcuts.setShortcut({}, ShortcutName::toggleQuillory()); }, {},
                 { sameShortcuts } },
             { "Option, not allowed", [&] { store.setModifierGesture(ModifierGesture::option); },
                 { needed, u"1. Tap Option once and release."_s, u"3. Release Option to close the reader."_s,
                     u"Set Up Input Monitoring…"_s, u"Show This Quillory App in Finder"_s, u"Check Access Again"_s,
                     u"Timing and troubleshooting"_s },
                 { allowed, gestureIsOff } },
             { "Shift, allowed",
                 [&] {
                     store.gesturePermissionGranted.assignAs<PresentationCoordinator>(true);
                     store.setModifierGesture(ModifierGesture::shift);
                 },
                 { allowed, u"2. Quickly press the same Shift key again and hold until the reader appears."_s },
                 { needed, gestureIsOff, u"Check Access Again"_s } },
             { "two pins",
                 [&] {
                     store.togglePin(u"b.md"_s);
                     store.togglePin(u"a.md"_s);
                 },
                 { u"Beta"_s, u"Unpin Beta"_s, u"Alpha"_s }, { noPins } },
             { "a file that is gone",
                 [&] {
                     services.root.remove("sheets/b.md");
                     store.reload();
                 },
                 { u"b.md (unavailable)"_s, u"Unpin b.md (unavailable)"_s }, { u"Beta"_s } },
             { "its pin taken away", [&] { named(u"Unpin b.md (unavailable)"_s).click(); }, { u"Alpha"_s },
                 { u"b.md (unavailable)"_s } },
             { "Learning Mode and a size",
                 [&] {
                     named(u"learningModeToggle"_s).click();
                     named<QSlider>(u"Text size"_s).setValue(20);
                 },
                 { u"Text size: 20"_s }, { u"Text size: 16"_s } },
         }) {
        make();
        auto const texts = shown();
        for (auto const& text : present)
            EXPECT_THAT(texts, Contains(text)) << change;
        for (auto const& text : absent)
            EXPECT_THAT(texts, Not(Contains(text))) << change;
    }
    EXPECT_TRUE(store.learningModeEnabled);
    EXPECT_EQ(
        named(u"learningModeToggle"_s).accessibleDescription(), u"Turn off Learning Mode to copy commands again"_s);
    EXPECT_EQ(store.textSize, 20);
    QTest::keyClick(&named<QComboBox>(u"keyNames"_s), Qt::Key_Down);
    EXPECT_EQ(store.keyNames.value(), KeyNames::words);
    EXPECT_THAT(store.pinnedIDs.value(), ElementsAre(u"a.md"_s));
}

TEST_F(SettingsWindowTest, Where_the_desktop_binds_the_keys_it_shows_what_that_has_made_of_them_and_no_gesture)
{
    using State = DesktopHotKeys::State;
    auto const changed = u"Your desktop has bound this to F9."_s, none = u"Your desktop has bound no keys to this."_s;
    auto const decides = u"In this session your desktop decides"_s, again = u"Ask the Desktop Again"_s;
    auto const bind = u"“quillory --toggle”"_s;
    desk.permission.isPossible = false;
    desk.hasDesktopHotKeys = true;
    store.setModifierGesture(ModifierGesture::shift);
    desk.line.shortcuts.setShortcut(Shortcut { 40, 6144 }, ShortcutName::toggleQuillory());
    desk.line.shortcuts.setShortcut(Shortcut { 38, 6144 }, ShortcutName::peekQuillory());
    SettingsWindow wayland(desk.settings());
    wayland.show();
    struct Row {
        State state;
        QMap<QString, QString> triggers;
        QStringList shown, hidden;
    };
    auto const toggle = u"toggleQuillory"_s, peek = u"peekQuillory"_s;
    for (auto const& row : {
             Row { State::bound, { { toggle, u"Ctrl+Alt+K"_s }, { peek, u"F9"_s } }, { changed, decides },
                 { none, again, bind, u"Setup needed"_s, u"How to use it"_s, u"Choose a gesture above"_s } },
             Row { State::bound, { { toggle, u"ctrl + alt + k"_s } }, { none, decides }, { changed } },
             Row { State::refused, {}, { again, bind }, { none, changed, decides } },
             Row { State::unavailable, {}, { bind, u"This session shows a key only"_s }, { none, again, decides } },
         }) {
        desk.desktopHotKeys.become(row.state, row.triggers);
        auto const all = shown(wayland).join(u'\n');
        for (auto const& text : row.shown)
            EXPECT_TRUE(all.contains(text)) << text.toStdString();
        for (auto const& text : row.hidden)
            EXPECT_FALSE(all.contains(text)) << text.toStdString();
    }
    auto const* const picker = wayland.findChild<QComboBox*>(u"modifierPeekGesture"_s);
    EXPECT_FALSE(picker->isEnabled());
    EXPECT_EQ(picker->currentIndex(), 0);
    EXPECT_EQ(store.modifierGesture.value(), ModifierGesture::shift) << "for the next session";
    for (auto* const button : wayland.findChildren<BarButton*>()) {
        if (button->text() == again)
            button->click();
    }
    EXPECT_EQ(desk.desktopHotKeys.asked, 1);
}

TEST_F(SettingsWindowTest, Its_buttons_do_what_they_say)
{
    store.setModifierGesture(ModifierGesture::option);
    int checks = 0;
    store.modifierGestureChanged = [&] { ++checks; };
    open();
    named(u"Set Up Input Monitoring…"_s).click();
    EXPECT_EQ(desk.permission.requests, 1);
    EXPECT_EQ(checks, 1);
    EXPECT_EQ(desk.desktopSettings.opened, 1);
    EXPECT_EQ(store.message.value(), std::nullopt);
    desk.desktopSettings.isKnown = false;
    named(u"Set Up Input Monitoring…"_s).click();
    EXPECT_TRUE(store.message.value()->contains(u"quillory --toggle"_s)) << "never nothing";
    named(u"Check Access Again"_s).click();
    EXPECT_EQ(checks, 3);
    EXPECT_EQ(desk.permission.requests, 2);
    named(u"Show This Quillory App in Finder"_s).click();
    EXPECT_THAT(services.fileOpener.calls, ElementsAre(u"reveal /usr/bin/quillory"_s));
    auto& picker = named<QComboBox>(u"modifierPeekGesture"_s);
    QTest::keyClick(&picker, Qt::Key_Up);
    EXPECT_EQ(store.modifierGesture.value(), ModifierGesture::shift);
    auto const label = [](QString const& text) {
        return [=](QLabel const* each) { return each->text().startsWith(text); };
    };
    auto const labels = window.findChildren<QLabel*>();
    auto const* const timing = *std::ranges::find_if(labels, label(u"Make the first tap"_s));
    EXPECT_FALSE(timing->isVisible());
    named(u"Timing and troubleshooting"_s).click();
    EXPECT_TRUE(timing->isVisible());
    services.openPanels.showWindow(window.winId());
    named(u"Choose or reconnect folder…"_s).click();
    services.executor.settle();
    EXPECT_FALSE(named(u"Choose or reconnect folder…"_s).isEnabled());
    auto const activations = services.workspace.ownActivations.size();
    services.openPanels.choose(services.root.path("sheets"));
    EXPECT_THAT(shown(), Contains(u"Connected folder: sheets"_s));
    EXPECT_EQ(services.workspace.ownActivations.size(), activations + 1) << "in front again";
}

TEST_F(SettingsWindowTest, The_start_with_the_desktop_is_shown_as_it_is_and_offered_once)
{
    auto const offer = u"Quillory can start with your desktop: turn it on in the settings."_s;
    StartOffer const offers(store, services.defaults, services.executor, desk.autostart);
    open();
    connect();
    EXPECT_EQ(store.message.value(), offer);
    store.withdrawMessage(offer);
    services.root.makeFolder("other");
    store.connect(services.root.path("other"));
    services.executor.settle();
    EXPECT_NE(store.message.value(), offer) << "told once";

    auto& start = named(u"startsWithDesktop"_s);
    EXPECT_FALSE(start.isChecked());
    start.click();
    EXPECT_EQ(desk.autostart.now, Autostart::State::on);
    EXPECT_TRUE(start.isChecked());
    desk.autostart.now = Autostart::State::off; // by another program
    QEvent front(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&window, &front);
    EXPECT_FALSE(start.isChecked());
    desk.autostart.refusal = u"No."_s;
    start.click();
    EXPECT_FALSE(start.isChecked());
    EXPECT_EQ(store.message.value(), u"Whether Quillory starts with your desktop could not be changed: No."_s);
}

TEST_F(SettingsWindowTest, Its_keys_close_it_and_its_size_is_remembered)
{
    for (auto const& [key, modifier] :
        std::initializer_list<std::pair<Qt::Key, Qt::KeyboardModifier>> {
            { Qt::Key_Escape, Qt::NoModifier }, { Qt::Key_W, Qt::ControlModifier }, { Qt::Key_W, Qt::MetaModifier } }) {
        open();
        QTest::keyClick(window.focusWidget(), key, modifier);
        EXPECT_FALSE(window.isVisible());
    }
    services.defaults.setValue(SettingsWindow::frameKey, u"{{5, 6}, {610, 480}}"_s);
    desk.readerFrame = QRect(100, 100, 800, 600);
    open();
    EXPECT_EQ(window.size(), QSize(610, 480));
    EXPECT_GE(window.x(), 900) << "beside the reader";
    auto const activations = services.workspace.ownActivations.size();
    window.bringToFront();
    EXPECT_EQ(services.workspace.ownActivations.size(), activations + 1) << "the same window";
}

TEST_F(SettingsWindowTest, Updates_have_their_rows_and_a_note_where_they_are_looked_for)
{
    auto const note = u"Checks for updates about once a day. Updates are installed with your approval."_s;
    EXPECT_THAT(shown(), Not(Contains(note)));
    auto withUpdates = desk.settings();
    withUpdates.makeUpdates = [](QWidget* parent) { return new QLabel(u"The rows"_s, parent); };
    SettingsView const view(withUpdates, nullptr);
    QStringList texts;
    for (auto const* const label : view.findChildren<QLabel*>())
        texts << label->text();
    EXPECT_EQ(texts.sliced(texts.indexOf(u"The rows"), 3), QStringList({ u"The rows"_s, note, u"Version 1.2"_s }));
}

TEST_F(SettingsWindowTest, Tab_reaches_every_control_once_and_starts_where_the_keyboard_was)
{
    open();
    QStringList names;
    auto* const first = window.focusWidget();
    do {
        names << window.focusWidget()->accessibleName() + window.focusWidget()->objectName();
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    } while (window.focusWidget() != first && names.size() < 20);
    EXPECT_THAT(names,
        ElementsAre(u"Choose or reconnect folder…"_s, u"Record shortcut: Toggle Quillory"_s,
            u"Record shortcut: Hold to peek"_s, u"modifierPeekGesture"_s, u"learningModeToggle"_s, u"Text size"_s,
            u"keyNames"_s, u"startsWithDesktop"_s));
    named<QComboBox>(u"modifierPeekGesture"_s).setFocus();
    window.focusWidget()->clearFocus();
    QTest::keyClick(&window, Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget()->objectName(), u"learningModeToggle"_s);
}

TEST_F(SettingsWindowTest, The_key_that_ends_a_recording_stays_with_the_field_until_it_is_up)
{
    using enum KeyStroke::Phase;
    open();
    auto& field = named<QLineEdit>(u"Record shortcut: Hold to peek"_s);
    QTest::mouseClick(&field, Qt::LeftButton);
    ASSERT_TRUE(desk.keyStrokes.monitor);
    auto const strike = [&](KeyStroke::Phase phase, bool isDown) {
        desk.keys.down = isDown ? std::set<std::uint16_t> { 38 } : std::set<std::uint16_t>();
        desk.keyStrokes.monitor({ .phase = phase, .keyCode = 38, .modifiers = ModifierFlags::control });
    };
    strike(down, true);
    EXPECT_EQ(field.text(), u"Ctrl+Alt+K"_s) << "as every shortcut here";
    EXPECT_FALSE(field.hasFocus());
    auto const stored = desk.line.shortcuts.getShortcut(ShortcutName::peekQuillory());
    EXPECT_EQ(stored, (Shortcut { 38, 4096 }));
    strike(up, true); // it repeats
    strike(down, true);
    EXPECT_TRUE(desk.keyStrokes.monitor);
    EXPECT_EQ(QWidget::keyboardGrabber(), &field);
    strike(up, false);
    EXPECT_FALSE(desk.keyStrokes.monitor);
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
    EXPECT_EQ(desk.line.shortcuts.getShortcut(ShortcutName::peekQuillory()), stored);
    QTest::mouseClick(&field, Qt::LeftButton);
    window.close();
    EXPECT_FALSE(desk.keyStrokes.monitor) << "a window that goes lets the keyboard go";
}

TEST(SettingsPlace, It_stands_beside_the_reader_where_there_is_room_and_always_within_the_screen)
{
    QRect const screen { 0, 0, 1600, 1000 };
    struct Row {
        QSize size;
        std::optional<QRect> reader;
        QPoint left; // and right edge
    };
    for (auto const& [size, reader, edges] : std::initializer_list<Row> {
             { { 500, 700 }, {}, { 550, 1050 } },
             { { 500, 700 }, QRect(0, 0, 800, 600), { 812, 1312 } },
             { { 500, 700 }, QRect(800, 0, 800, 600), { 288, 788 } },
             { { 500, 700 }, QRect(300, 400, 1000, 600), { 1100, 1600 } },
             { { 5000, 7000 }, QRect(0, 900, 800, 600), { 0, 1600 } },
         }) {
        auto const frame = SettingsPlace::frame(size, screen, reader);
        EXPECT_EQ(frame.left(), edges.x()) << size.width();
        EXPECT_EQ(frame.right() + 1, edges.y());
        EXPECT_TRUE(screen.contains(frame));
    }
}

}
}
