#pragma once

#include "rendering/TextAttributes.h"

#include <QFont>
#include <QString>

namespace Quillory {

// The faces that stand for the font families of an attributed text. A value; needs a QGuiApplication to make fonts.
class FontSet {
public:
    // The desktop's own body and monospaced faces.
    static FontSet ofDesktop();
    FontSet(QString systemFamily, QString monospacedFamily);

    // One point is one logical pixel.
    QFont font(FontAttribute const& attribute) const;

    bool operator==(FontSet const&) const = default;

private:
    QString m_systemFamily;
    QString m_monospacedFamily;
};

}
