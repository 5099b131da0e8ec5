#include "KeyboardShortcuts/SpecialKey.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace Quillory::SpecialKeys {

namespace {

struct Row {
    SpecialKey key;
    std::int64_t code;
    QStringView text;
    char16_t keyEquivalent;
};

constexpr auto table = std::to_array<Row>({
    { SpecialKey::return_, 36, u"↩", u'\r' },
    { SpecialKey::delete_, 51, u"⌫", u'\b' },
    { SpecialKey::deleteForward, 117, u"⌦", u'\xf728' },
    { SpecialKey::end, 119, u"↘", u'\xf72b' },
    { SpecialKey::escape, 53, u"⎋", u'\x001b' },
    { SpecialKey::help, 114, u"?\u20dd", u'\xf746' },
    { SpecialKey::home, 115, u"↖", u'\xf729' },
    { SpecialKey::space, 49, u"Space", u' ' },
    { SpecialKey::tab, 48, u"⇥", u'\t' },
    { SpecialKey::pageUp, 116, u"⇞", u'\xf72c' },
    { SpecialKey::pageDown, 121, u"⇟", u'\xf72d' },
    { SpecialKey::upArrow, 126, u"↑", u'\xf700' },
    { SpecialKey::rightArrow, 124, u"→", u'\xf703' },
    { SpecialKey::downArrow, 125, u"↓", u'\xf701' },
    { SpecialKey::leftArrow, 123, u"←", u'\xf702' },
    { SpecialKey::f1, 122, u"F1", u'\xf704' },
    { SpecialKey::f2, 120, u"F2", u'\xf705' },
    { SpecialKey::f3, 99, u"F3", u'\xf706' },
    { SpecialKey::f4, 118, u"F4", u'\xf707' },
    { SpecialKey::f5, 96, u"F5", u'\xf708' },
    { SpecialKey::f6, 97, u"F6", u'\xf709' },
    { SpecialKey::f7, 98, u"F7", u'\xf70a' },
    { SpecialKey::f8, 100, u"F8", u'\xf70b' },
    { SpecialKey::f9, 101, u"F9", u'\xf70c' },
    { SpecialKey::f10, 109, u"F10", u'\xf70d' },
    { SpecialKey::f11, 103, u"F11", u'\xf70e' },
    { SpecialKey::f12, 111, u"F12", u'\xf70f' },
    { SpecialKey::f13, 105, u"F13", u'\xf710' },
    { SpecialKey::f14, 107, u"F14", u'\xf711' },
    { SpecialKey::f15, 113, u"F15", u'\xf712' },
    { SpecialKey::f16, 106, u"F16", u'\xf713' },
    { SpecialKey::f17, 64, u"F17", u'\xf714' },
    { SpecialKey::f18, 79, u"F18", u'\xf715' },
    { SpecialKey::f19, 80, u"F19", u'\xf716' },
    { SpecialKey::f20, 90, u"F20", u'\xf717' },
    { SpecialKey::keypad0, 82, u"0\u20e3", u'0' },
    { SpecialKey::keypad1, 83, u"1\u20e3", u'1' },
    { SpecialKey::keypad2, 84, u"2\u20e3", u'2' },
    { SpecialKey::keypad3, 85, u"3\u20e3", u'3' },
    { SpecialKey::keypad4, 86, u"4\u20e3", u'4' },
    { SpecialKey::keypad5, 87, u"5\u20e3", u'5' },
    { SpecialKey::keypad6, 88, u"6\u20e3", u'6' },
    { SpecialKey::keypad7, 89, u"7\u20e3", u'7' },
    { SpecialKey::keypad8, 91, u"8\u20e3", u'8' },
    { SpecialKey::keypad9, 92, u"9\u20e3", u'9' },
    { SpecialKey::keypadClear, 71, u"☒\u20e3", u'\xf739' },
    { SpecialKey::keypadDecimal, 65, u".\u20e3", u'.' },
    { SpecialKey::keypadDivide, 75, u"/\u20e3", u'/' },
    { SpecialKey::keypadEnter, 76, u"↩\u20e3", u'\x0003' },
    { SpecialKey::keypadEquals, 81, u"=\u20e3", u'=' },
    { SpecialKey::keypadMinus, 78, u"-\u20e3", u'-' },
    { SpecialKey::keypadMultiply, 67, u"*\u20e3", u'*' },
    { SpecialKey::keypadPlus, 69, u"+\u20e3", u'+' },
});

Row const& row(SpecialKey key)
{
    return *std::ranges::find(table, key, &Row::key);
}

}

std::optional<SpecialKey> withCode(std::int64_t keyCode)
{
    auto const found = std::ranges::find(table, keyCode, &Row::code);
    return found == table.end() ? std::nullopt : std::optional(found->key);
}

std::int64_t code(SpecialKey key)
{
    return row(key).code;
}

QString text(SpecialKey key)
{
    if (key == SpecialKey::space)
        return QCoreApplication::translate("KeyboardShortcuts", "Space");
    return row(key).text.toString();
}

QString keyEquivalent(SpecialKey key)
{
    return QChar(row(key).keyEquivalent);
}

bool isInFunctionKeySet(std::int64_t keyCode)
{
    auto const key = withCode(keyCode);
    if (!key)
        return false;
    if (*key >= SpecialKey::f1 && *key <= SpecialKey::f20)
        return true;
    switch (*key) {
    case SpecialKey::help:
    case SpecialKey::deleteForward:
    case SpecialKey::keypadClear:
    case SpecialKey::home:
    case SpecialKey::end:
    case SpecialKey::pageUp:
    case SpecialKey::pageDown:
    case SpecialKey::upArrow:
    case SpecialKey::rightArrow:
    case SpecialKey::downArrow:
    case SpecialKey::leftArrow:
        return true;
    default:
        return false;
    }
}

}
