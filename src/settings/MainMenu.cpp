#include "settings/MainMenu.h"

#include <QCoreApplication>

#include <array>

namespace Quillory {

namespace {

struct Command {
    Q_DECLARE_TR_FUNCTIONS(MainMenu)
public:
    char const* title; // to be translated
    char16_t key;
};

constexpr auto commands = std::to_array<Command>({
    { QT_TRANSLATE_NOOP("MainMenu", "Copy"), u'c' },
    { QT_TRANSLATE_NOOP("MainMenu", "Select all"), u'a' },
    { QT_TRANSLATE_NOOP("MainMenu", "Search library"), u'k' },
    { QT_TRANSLATE_NOOP("MainMenu", "Find in sheet"), u'f' },
    { QT_TRANSLATE_NOOP("MainMenu", "Refresh"), u'r' },
    { QT_TRANSLATE_NOOP("MainMenu", "Larger text"), u'=' },
    { QT_TRANSLATE_NOOP("MainMenu", "Smaller text"), u'-' },
    { QT_TRANSLATE_NOOP("MainMenu", "Usual text size"), u'0' },
    { QT_TRANSLATE_NOOP("MainMenu", "Close"), u'w' },
    { QT_TRANSLATE_NOOP("MainMenu", "Quit Quillory"), u'q' },
});

}

std::vector<MenuItem> mainMenu()
{
    std::vector<MenuItem> items;
    for (auto const& command : commands) {
        for (auto const modifier : { ModifierFlags::control, ModifierFlags::command })
            items.push_back({ Command::tr(command.title), QString(command.key), modifier, {} });
    }
    return items;
}

}
