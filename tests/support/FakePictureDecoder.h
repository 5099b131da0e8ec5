#pragma once

#include "platform/PictureDecoder.h"

#include <atomic>

namespace Quillory {

// Decodes pictures that say what they are: `picture` makes their bytes. Counts what it decodes. Safe on any thread.
class FakePictureDecoder final : public PictureDecoder {
public:
    enum class Damage { none, cannotBeDecoded };

    // `mark` tells pictures of the same properties apart.
    static QByteArray picture(Properties const& properties, int mark = 0, Damage damage = Damage::none);

    int decodes() const { return m_decodes; }

    std::optional<Properties> properties(QByteArray const& bytes) const override;
    std::optional<QImage> image(QByteArray const& bytes) const override;
    std::optional<QImage> thumbnail(QByteArray const& bytes, int longestSide) const override;

private:
    mutable std::atomic<int> m_decodes = 0;
};

}
