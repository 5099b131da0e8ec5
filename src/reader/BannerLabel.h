#pragma once

#include <QLabel>

namespace Quillory {

// The text of a banner: wrapped, plain, never wider than its place nor higher than a few lines; what is longer is whole
// as hover help. GUI thread only.
class BannerLabel : public QLabel {
    Q_OBJECT
public:
    explicit BannerLabel(QWidget* parent);

    // Tells assistive programs of a new text as it comes, as the banner's alert.
    void say(QString const& text);

    int heightForWidth(int width) const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    int mostHeight() const;
};

}
