#pragma once

#include "reader/BannerLabel.h"
#include "reader/ReaderWindowState.h"

namespace Quillory {

// Says at all times whether code can be copied. GUI thread only.
class LearningModeBar : public QWidget {
    Q_OBJECT
public:
    // `announcements` outlive it.
    LearningModeBar(Announcements& announcements, QWidget* parent);

    void refresh(ReaderWindowState const& state);

    BannerLabel& text() const { return *m_text; }

private:
    BannerLabel* m_text;
};

}
