#pragma once

#include "linux/files/PosixFileSystem.h"

#include <functional>

namespace Quillory {

// The machine's own files, with a fault where a test asks for one.
class FaultyFileSystem final : public FileSystem {
public:
    enum class Step {
        openFolder,
        names,
        status,
        read,
        open,
        fileStatus,
        fileRealPath,
        fileRead,
        everyName,
        openForInstalling,
        makeFolder,
        createFile,
        write,
        close,
        publish,
    };

    // Called before each step with the name that it is about, on the step's own thread. Gives the `errno` to fail with,
    // or 0; what it does to the files meanwhile is what another program does. A failing write writes the half.
    std::function<int(Step, QByteArray const& name)> before;

    std::expected<std::unique_ptr<OpenFolder>, SystemError> openFolder(QString const& path) const override;
    std::expected<std::vector<QByteArray>, SystemError> everyName(QString const& path) const override;
    std::expected<std::unique_ptr<InstallFolder>, SystemError> openForInstalling(QString const& path) const override;

private:
    class Folder;
    class File;
    class Install;
    class NewFile;

    template<typename Action>
    std::invoke_result_t<Action> step(Step step, QByteArray const& name, Action action) const
    {
        if (int const error = before ? before(step, name) : 0)
            return std::unexpected(SystemError(error));
        return action();
    }

    // What `open` opens, seen through `Wrapper`.
    template<typename Wrapper, typename Action>
    std::invoke_result_t<Action> opened(Step step, QByteArray const& name, Action open) const
    {
        auto real = this->step(step, name, open);
        if (real)
            real = std::make_unique<Wrapper>(*this, *std::move(real), name);
        return real;
    }

    PosixFileSystem m_real;
};

}
