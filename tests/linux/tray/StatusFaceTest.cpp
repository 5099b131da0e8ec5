#include "linux/tray/StatusFace.h"

#include "support/Test.h"

#include <QPainter>

namespace Quillory {
namespace {

StatusItemLook lookOf(std::optional<QStringList> const& characters)
{
    return {
        .autosaveName = u"name"_s, .characters = characters, .title = {}, .toolTip = {}, .accessibilityLabel = {}
    };
}

// How many pixels of the face can be told from its ground.
int seenPixels(QImage const& face, QColor const& ground)
{
    constexpr int told = 60; // of 255
    QImage seen(face.size(), QImage::Format_RGB32);
    seen.fill(ground);
    QPainter(&seen).drawImage(0, 0, face);
    int count = 0;
    for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x)
            count += std::abs(qGray(seen.pixel(x, y)) - qGray(ground.rgb())) > told;
    }
    return count;
}

TEST(StatusFace, It_is_square_and_seen_on_either_ground_whatever_its_ink)
{
    std::optional<QStringList> const faces[] { {}, { { u"G"_s, u"i"_s, u"t"_s } }, { { u"W"_s, u"W"_s, u"W"_s } },
        { { u"g"_s } }, { { u"🚀"_s, u"👩‍👩‍👧"_s, u"🇩🇪"_s } } };
    for (auto const& characters : faces) {
        for (bool const isLightInk : { false, true }) {
            for (int const side : StatusFace::sides) {
                SCOPED_TRACE(characters.value_or(QStringList()).join(QString()).toStdString() + " of "
                    + std::to_string(side) + (isLightInk ? " in light ink" : " in dark ink"));
                auto const face = StatusFace::drawn(lookOf(characters), { QFont(), isLightInk }, side);
                EXPECT_EQ(face.size(), QSize(side, side));
                for (auto const* const ground : { "#efefef", "#2b2b2d" })
                    EXPECT_GT(seenPixels(face, ground), side * side / 16) << ground;
                int const edge = side - 1;
                for (int place = 0; place < side; ++place) {
                    for (QPoint const point : { QPoint(place, 0), { place, edge }, { 0, place }, { edge, place } })
                        ASSERT_LT(qAlpha(face.pixel(point)), 255) << "nothing is cut off";
                }
            }
        }
    }
}

TEST(StatusFace, An_empty_title_has_an_empty_face_and_a_waiting_update_a_coloured_dot)
{
    StatusFace::Style const style { QFont(), false };
    EXPECT_EQ(seenPixels(StatusFace::drawn(lookOf(QStringList()), style, 22), Qt::white), 0);
    auto look = lookOf({});
    look.attention = StatusItemLook::Attention::waiting;
    for (int const side : StatusFace::sides) {
        auto const dotted = StatusFace::drawn(look, style, side);
        int coloured = 0;
        for (int y = 0; y < side / 2; ++y) {
            for (int x = side / 2; x < side; ++x)
                coloured += dotted.pixelColor(x, y).alpha() > 200 && dotted.pixelColor(x, y).hsvSaturation() > 150;
        }
        EXPECT_GT(coloured, side * side / 30) << side;
    }
}

}
}
