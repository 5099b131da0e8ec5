#pragma once

#include "library/KeyNames.h"
#include "library/PreparedImage.h"
#include "library/ShortcutSheet.h"
#include "rendering/RenderedMarkdown.h"
#include "rendering/SectionExtent.h"
#include "rendering/TextMeasure.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

namespace Quillory {

// A structured sheet with everything measured and spelled out that doesn't depend on the width it is rendered for: a
// window that is resized renders at every step. An immutable value.
class PreparedShortcuts {
public:
    using Images = QMap<QString, PreparedImage>; // by the icon as written

    // `textSize` is the reader's, in points. `measure` is asked here alone.
    PreparedShortcuts(ShortcutSheet const& sheet, Images const& images, double textSize, TextMeasure const& measure,
        KeyNames keyNames = KeyNames::symbols);

    // `width` is what the text has, in points.
    RenderedMarkdown render(double width) const;

private:
    class Drawing;

    // Positions in m_looks. After the first modifier stand two looks for each: of its symbol, and of the symbol's last
    // character, which has the gap after it.
    enum Look : std::size_t {
        entryLook,
        detailLook,
        titleLook,
        descriptionLook,
        iconGapLook,
        keyLook,
        jointLook, // between keys that are named by words
        firstModifierLook
    };

    struct Run {
        qsizetype end = 0;
        std::size_t look = entryLook;
    };
    struct Entry {
        QString title;
        QString shortcuts; // all of them, as shown
        std::vector<Run> runs; // of the shortcuts
        std::vector<TextRange> targets; // within the shortcuts
        double oneLineWidth = 0; // that title and shortcuts take beside each other
        QString text;
    };
    struct Section {
        std::optional<Attachment> icon;
        QString title;
        QString description;
        std::vector<Entry> entries;
    };

    void makeLooks(TextMeasure const& measure);
    std::optional<Attachment> iconOf(ShortcutSheet::Section const& section, Images const& images) const;
    Entry prepared(ShortcutSheet::Entry const& entry, TextMeasure const& measure);
    static void append(Entry& entry, QStringView text, std::size_t look, double width);
    void append(Entry& entry, ShortcutSheet::Step const& step, TextMeasure const& measure) const;
    void appendModifier(Entry& entry, std::size_t index, TextMeasure const& measure) const;

    double m_textSize;
    KeyNames m_keyNames;
    std::vector<TextAttributes> m_looks;
    QString m_description;
    std::vector<Section> m_sections;
    std::vector<SectionExtent> m_extents; // of the sections
    QStringList m_labels; // of all targets
    qsizetype m_length = 0; // of the text, at most
};

}
