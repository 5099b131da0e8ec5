#include "fuzz/Fuzzer.h"

#include "library/ForeignBytes.h"
#include "library/LibraryReference.h"
#include "library/SheetPictures.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtPictureDecoder.h"
#include "platform/InProcessSandbox.h"
#include "support/TemporaryFolder.h"

using namespace Quillory;

// As a reference, the bytes never lead out of the library. As a file, they give an icon of the one size or a warning,
// and a small picture or none.
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
    auto const path = size < 4096 ? resolveLibraryReference(QString::fromUtf8(bytes), *folder) : std::nullopt;
    require(!path || !path->contains('\0'));
    for (auto const& name : path ? path->split('/') : QByteArrayList())
        require(!name.isEmpty() && name != "." && name != "..");

    ShortcutSheet sheet;
    sheet.icon = QStringLiteral("a.png");
    auto const parsed = ParsedMarkdown::parsing(QStringLiteral("![](a.png)"));
    InProcessSandbox sandbox(ForeignBytes::interpreter(decoder));
    SheetPictures pictures(*folder, sandbox);
    pictures.askFor({ .shortcuts = sheet }, {}, {});
    pictures.askFor({ .parsed = parsed }, {}, {});
    pictures.wait({}, {});
    auto const icons = pictures.prepareIcons(sheet);
    require(icons.images.size() + icons.warnings.size() == 1);
    for (auto const& icon : icons.images)
        require(icon.cgImage.size() == QSize(SheetPictures::iconSide, SheetPictures::iconSide));
    for (auto const& image : pictures.prepareMarkdownImages(parsed)) {
        auto const shown = image.cgImage.size();
        require(!shown.isEmpty() && std::max(shown.width(), shown.height()) <= SheetPictures::markdownImageSize);
    }
    return 0;
}
