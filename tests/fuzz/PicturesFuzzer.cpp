#include "fuzz/Fuzzer.h"

#include "library/LibraryReference.h"
#include "library/SheetPictures.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtPictureDecoder.h"
#include "support/TemporaryFolder.h"

#include <QSet>

namespace {

using namespace Quillory;

// As a reference, the bytes never lead out of the library.
void refer(OpenFolder const& folder, QByteArray const& bytes)
{
    auto const path = resolveLibraryReference(QString::fromUtf8(bytes), folder);
    if (!path)
        return;
    require(!path->isEmpty() && !path->startsWith('/') && !path->contains('\0'));
    for (auto const& name : path->split('/'))
        require(!name.isEmpty() && name != "." && name != "..");
}

// As a file, they give an icon of the one size or a warning, and a small picture or none.
void show(OpenFolder const& folder, QtPictureDecoder const& decoder)
{
    ShortcutSheet sheet;
    sheet.icon = QStringLiteral("a.png");
    SheetPictures pictures(folder, decoder);
    auto const icons = pictures.prepareIcons(sheet);
    require(icons.images.size() + icons.warnings.size() == 1);
    for (auto const& icon : icons.images)
        require(icon.cgImage.size() == QSize(SheetPictures::iconSide, SheetPictures::iconSide));
    auto const markdown = pictures.prepareMarkdownImages(ParsedMarkdown::parsing(QStringLiteral("![](a.png)")));
    for (auto const& image : markdown) {
        auto const size = image.cgImage.size();
        require(!size.isEmpty() && std::max(size.width(), size.height()) <= SheetPictures::markdownImageSize);
    }
}

}

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static QtPictureDecoder const decoder;
    static TemporaryFolder const root;
    auto const bytes = bytesOf(data, size);
    root.write("library/a.png", bytes);
    root.write("library/images/b.png", bytes);
    if (!root.has("library/out"))
        root.link("library/out", "../other");
    auto const folder = PosixFileSystem().openFolder(root.path("library")).value();
    if (size < 4096)
        refer(*folder, bytes);
    show(*folder, decoder);
    return 0;
}
