#include "fuzz/Fuzzer.h"

#include "library/LibraryReference.h"
#include "library/SheetPictures.h"
#include "platform/linux/qt/QtPictureDecoder.h"
#include "support/FakeFileSystem.h"

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
    auto const library = QStringLiteral("/library");
    auto const bytes = bytesOf(data, size);
    FakeFileSystem files;
    files.write(library, "a.png", bytes);
    files.write(library, "images/b.png", bytes);
    files.put(library, "out", { .kind = FakeFileSystem::Kind::symbolicLink, .contents = "../other" });
    auto const folder = files.openFolder(library).value();
    if (size < 4096)
        refer(*folder, bytes);
    show(*folder, decoder);
    return 0;
}
