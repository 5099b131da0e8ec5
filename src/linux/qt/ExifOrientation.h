#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QImage>

namespace Quillory {

// Which way up a picture is meant to be seen, as cameras number it: 1 is as stored. Read where the toolkit reads none.
class ExifOrientation {
public:
    // Of Exif data, with or without its own introduction. As stored where that says nothing or is damaged.
    static ExifOrientation of(QByteArrayView exif);

    // Of the whole file.
    static ExifOrientation ofWebp(QByteArrayView webp);

    // Turns the picture from how it is stored to how it is seen.
    QImage upright(QImage const& stored) const;

private:
    int m_number = 1;
};

}
