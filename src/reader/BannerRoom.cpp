#include "reader/BannerRoom.h"

#include "reader/BannerLabel.h"
#include "reader/BannerRow.h"
#include "reader/BarButton.h"

#include <QLayout>

#include <algorithm>
#include <iterator>
#include <numeric>

namespace Quillory {

namespace {

// Of a banner with one line, without buttons below it. Not as its layout has it, which may be of an earlier state.
int heightAround(QWidget const& bar, int line)
{
    auto const margins = bar.layout()->contentsMargins();
    auto const* const close = bar.findChild<BarButton const*>({}, Qt::FindDirectChildrenOnly);
    return margins.top() + margins.bottom() + std::max(line, close ? close->sizeHint().height() : 0);
}

// At once, from the inside outwards, so that the bar asks for its new height.
void layOut(QWidget& text, QWidget const& bar)
{
    for (auto* around = text.parentWidget(); around != bar.parentWidget(); around = around->parentWidget())
        around->layout()->activate();
}

}

void BannerRoom::add(QWidget& bar, BannerLabel& text, BannerRow* row)
{
    m_banners.push_back({ &bar, &text, row });
}

std::vector<BannerRoom::Banner> BannerRoom::shown() const
{
    std::vector<Banner> shown;
    std::ranges::copy_if(m_banners, std::back_inserter(shown), [](auto const& each) { return !each.bar->isHidden(); });
    return shown;
}

void BannerRoom::share(int height) const
{
    auto const banners = shown();
    if (banners.empty())
        return;
    auto const line = banners.front().text->fontMetrics().lineSpacing();
    auto const sum = [&](auto part) {
        return std::transform_reduce(banners.begin(), banners.end(), 0, std::plus(), part);
    };
    auto const count = static_cast<int>(banners.size());
    auto const least = sum([line](Banner const& each) { return heightAround(*each.bar, line); });
    auto const buttons = sum([](Banner const& each) { return each.row ? each.row->wantedByButtons() : 0; });
    bool const haveButtons = least + buttons <= height;
    auto const lines = count + (height - least - (haveButtons ? buttons : 0)) / line;
    auto const needed = [&](int most) {
        return sum([most](Banner const& each) { return std::min(most, each.text->wantedLines()); });
    };
    auto most = BannerLabel::mostLines;
    while (most > 1 && needed(most) > lines)
        --most;
    for (auto const& banner : banners) {
        banner.text->setMostLines(most);
        if (banner.row)
            banner.row->setHasRoomForButtons(haveButtons);
        layOut(*banner.text, *banner.bar);
    }
}

}
