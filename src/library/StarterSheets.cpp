#include "library/StarterSheets.h"

#include "text/Capitalized.h"

#include <QCoreApplication>

namespace Quillory::StarterSheets {

namespace {

using namespace Qt::StringLiterals;

constexpr auto structuredEnding = ".quillory"_L1;
constexpr auto targetEnding = ".quillory.json"_L1;
constexpr qsizetype selectedCount = 6;

}

QStringList names()
{
    return { u"git"_s, u"vim"_s, u"pandas"_s, u"kubernetes"_s, u"docker"_s, u"markdown"_s, u"brave.quillory"_s,
        u"xcode.quillory"_s, u"sequel-ace.quillory"_s, u"intellij-idea.quillory"_s, u"vscode.quillory"_s };
}

QStringList selectedByDefault()
{
    return names().first(selectedCount);
}

QString targetName(QString const& name)
{
    return name + (name.endsWith(structuredEnding) ? ".json"_L1 : ".md"_L1);
}

bool isStructured(QString const& targetName)
{
    return targetName.endsWith(targetEnding);
}

QString label(QString const& name)
{
    if (name == "vscode.quillory"_L1)
        return u"Visual Studio Code"_s;
    if (name == "intellij-idea.quillory"_L1)
        return u"IntelliJ IDEA"_s;
    if (name.endsWith(structuredEnding)) {
        auto stem = name.chopped(structuredEnding.size());
        return QCoreApplication::translate("Library", "%1 · JSON example").arg(capitalized(stem.replace(u'-', u' ')));
    }
    if (name == "pandas"_L1)
        return name;
    return capitalized(name);
}

}
