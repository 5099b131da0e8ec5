#include "library/LibraryReference.h"
#include "platform/linux/files/PosixFileSystem.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <functional>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;

// A real folder in which somebody changes something right before or right after a file is opened.
class SwappedFolder final : public OpenFolder {
public:
    using Swap = std::function<void()>;

    SwappedFolder(OpenFolder const& folder, Swap before, Swap after)
        : m_folder(folder)
        , m_before(std::move(before))
        , m_after(std::move(after))
    {
    }

    std::expected<std::vector<QByteArray>, SystemError> names() const override { return m_folder.names(); }
    std::expected<EntryStatus, SystemError> status(QByteArray const& name) const override
    {
        return m_folder.status(name);
    }
    std::expected<std::optional<QByteArray>, SystemError> read(QByteArray const& name, qint64 limit) const override
    {
        return m_folder.read(name, limit);
    }
    std::expected<QByteArray, SystemError> realPath() const override { return m_folder.realPath(); }
    std::expected<QByteArray, SystemError> realPath(QByteArray const& path) const override
    {
        return m_folder.realPath(path);
    }
    std::expected<std::unique_ptr<OpenFile>, SystemError> open(QByteArray const& path) const override
    {
        m_before();
        auto file = m_folder.open(path);
        m_after();
        return file;
    }

private:
    OpenFolder const& m_folder;
    Swap m_before;
    Swap m_after;
};

TEST(ReferenceRace, What_is_swapped_between_the_check_and_the_read_gives_nothing_from_outside)
{
    struct Case {
        char const* before;
        char const* after;
        std::optional<QByteArray> read;
    };
    for (auto const& [before, after, read] : {
             Case { "", "", "inside" },
             Case { "ln -sf ../../outside/x.png library/pics/x.png", "", {} },
             Case { "mv library/pics away; ln -s ../outside library/pics", "", {} },
             Case { "", "mv library/pics outside", {} },
             Case { "", "mv library/pics library/other", "inside" },
         }) {
        QTemporaryDir const root;
        auto const shell = [&](char const* script) {
            auto const command = "set -e; cd '" + QFile::encodeName(root.path()) + "'; " + script;
            ASSERT_EQ(std::system(command.constData()), 0) << script;
        };
        shell("mkdir -p library/pics outside; printf inside > library/pics/x.png; printf outside > outside/x.png");
        auto const folder = PosixFileSystem().openFolder(root.filePath(u"library"_s)).value();
        auto const path = resolveLibraryReference(u"pics/x.png"_s, *folder);
        ASSERT_TRUE(path);
        SwappedFolder const swapped(*folder, [&] { shell(before); }, [&] { shell(after); });
        EXPECT_EQ(readLibraryFile(*path, swapped, 100), read) << before << after;
    }
}

}
}
