#pragma once

#include <QAbstractNativeEventFilter>

namespace Quillory {

// Keeps sizes from the toolkit that no window of a person's has. Any client may tell of one, truly or not, and the
// toolkit would take the memory for its pixels: 2.7 GB were seen. Watches the application for as long as it lives.
class WindowSizeFilter final : public QAbstractNativeEventFilter {
public:
    WindowSizeFilter();
    ~WindowSizeFilter() override;
    Q_DISABLE_COPY_MOVE(WindowSizeFilter)

    bool nativeEventFilter(QByteArray const& type, void* message, qintptr* result) override;
};

}
