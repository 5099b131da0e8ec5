#pragma once

#include <vector>

class QWidget;

namespace Quillory {

class BannerLabel;
class BannerRow;

// Shares a window that is too low among the banners: the longest texts give lines first, then the buttons below texts
// go, so that nothing is squeezed. GUI thread only.
class BannerRoom {
public:
    // All of them outlive it. `row` is null where the banner has no buttons.
    void add(QWidget& bar, BannerLabel& text, BannerRow* row = nullptr);

    // `height` is for all banners that are shown.
    void share(int height) const;

private:
    struct Banner {
        QWidget* bar;
        BannerLabel* text;
        BannerRow* row;
    };

    std::vector<Banner> shown() const;

    std::vector<Banner> m_banners;
};

}
