#pragma once

#include "reader/BannerLabel.h"
#include "reader/BannerRow.h"

namespace Quillory {

// A banner under a warning sign: about the sheet's icons, or why the sheet could not be read. Hidden while there is
// nothing to say. GUI thread only.
class WarningBar : public QWidget {
    Q_OBJECT
public:
    // Takes the label over; ReaderStyle knows it by its name.
    WarningBar(BannerLabel* text, char const* name, QWidget* parent);

    void show(QString const& text, QString const& tail = {});

    BannerLabel& text() const { return *m_text; }
    BannerRow& row() const { return *m_row; }

private:
    BannerLabel* m_text;
    BannerRow* m_row;
};

}
