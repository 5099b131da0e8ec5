#include "KeyboardShortcuts/bindings/DesktopBindings.h"

#include "KeyboardShortcuts/bindings/BindingDialect.h"
#include "platform/ModifierNames.h"

#include <utility>

namespace Quillory {

DesktopBindings::DesktopBindings(
    Keys keys, std::function<std::optional<QString>(std::uint16_t)> symbolName, QString command)
    : m_keys(keys)
    , m_symbolName(std::move(symbolName))
    , m_command(std::move(command))
{
}

QStringList DesktopBindings::desktops()
{
    return BindingDialect::desktops();
}

std::expected<QString, QString> DesktopBindings::textFor(QString const& desktop) const
{
    auto const& dialect = BindingDialect::of(desktop);
    QString text;
    for (auto const& note : notes(dialect))
        text += QStringLiteral("# ") + note + QLatin1Char('\n');
    for (auto const action : { Action::toggle, Action::peek }) {
        auto const bound = binding(dialect, action);
        if (!bound)
            return bound;
        text += *bound;
    }
    return text;
}

QStringList DesktopBindings::notes(BindingDialect const& dialect) const
{
    QStringList notes { tr(dialect.place) };
    if (dialect.ownKeys == BindingDialect::OwnKeys::onX11)
        notes << tr("On X11 Quillory takes its shortcuts itself: clear them in its settings once these are bound.");
    if (!m_keys.toggle)
        notes << tr("No shortcut is stored that calls the reader: these are the usual keys.");
    if (dialect.keyRelease == BindingDialect::KeyRelease::unknown)
        notes << tr("A key that is let go starts nothing on this desktop: it can't bind a peek.");
    else if (shortcutOf(Action::toggle) == shortcutOf(Action::peek))
        notes << tr("The same keys are stored for the peek, which is inactive then.");
    else if (!m_keys.peek)
        notes << tr("No shortcut is stored that peeks: these are the usual keys.");
    return notes;
}

Shortcut DesktopBindings::shortcutOf(Action action) const
{
    constexpr std::int64_t keyJ = 38, keyK = 40;
    auto const controlAndAlt = Shortcut::carbonModifiersOf(ModifierFlags::control | ModifierFlags::option);
    return action == Action::toggle ? m_keys.toggle.value_or(Shortcut { keyK, controlAndAlt })
                                    : m_keys.peek.value_or(Shortcut { keyJ, controlAndAlt });
}

std::expected<QString, QString> DesktopBindings::binding(BindingDialect const& dialect, Action action) const
{
    auto const shortcut = shortcutOf(action);
    bool const isPeek = action == Action::peek;
    if (isPeek && (dialect.keyRelease == BindingDialect::KeyRelease::unknown || shortcut == shortcutOf(Action::toggle)))
        return QString();
    auto const combination = shortcut.combination();
    auto const symbol = combination ? m_symbolName(combination->keyCode) : std::nullopt;
    auto const keys = symbol ? dialect.keys(combination->modifiers, *symbol) : std::nullopt;
    if (!keys)
        return std::unexpected(isPeek
                ? tr("%1 has no name for the keys that peek. Choose others in the settings.")
                      .arg(QString(dialect.desktop))
                : tr("%1 has no name for the keys that call the reader. Choose others in the settings.")
                      .arg(QString(dialect.desktop)));
    auto text = QString::fromLatin1(isPeek ? dialect.peek : dialect.toggle);
    auto const held = ModifierNames::write(combination->modifiers);
    text.replace(QStringLiteral(" --held HELD"), held.isEmpty() ? QString() : QStringLiteral(" --held ") + held);
    return text.replace(QStringLiteral("KEYS"), *keys).replace(QStringLiteral("COMMAND"), m_command);
}

}
