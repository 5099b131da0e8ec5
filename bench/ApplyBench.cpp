// How long the main thread is held while the result of a load is applied and the old list let go, with 5,000 sheets.
// Worst of 20 for each case; the sheets are let go where the workers would do it.
//
//   quillory-bench-apply

#include "library/LibraryLoad.h"
#include "support/FakeLibraryServices.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <functional>

namespace {

using namespace Quillory;

constexpr int repetitions = 20;
constexpr int sheetCount = 5'000;
constexpr qsizetype sheetSize = 4'096; // bytes

QString const& folder()
{
    static QString const path = QStringLiteral("/library");
    return path;
}

QByteArray nameOf(int number)
{
    return "sheet-" + QByteArray::number(number) + ".md";
}

// `version` stands at the end, where a comparison meets it last.
QByteArray sheetText(int number, int version)
{
    QByteArray text = "# Sheet " + QByteArray::number(number) + "\n\n";
    while (text.size() < sheetSize)
        text += "- run `tool --flag` and *look* at **what** it says\n\n```sh\ntool start | tee log\n```\n\n";
    return text + QByteArray::number(version) + "\n";
}

class Bench {
public:
    Bench()
        : m_store(m_services.services(), LibraryStore::RestoreFolder::no)
    {
        m_notifier = m_store.sheets.addNotifier([this] { ++m_told; });
    }

    void writeAll(int version)
    {
        for (int number = 0; number < sheetCount; ++number)
            m_services.files.write(folder(), nameOf(number), sheetText(number, version));
    }

    QList<Sheet> load(QList<Sheet> const& previous) const
    {
        return loadLibrary(m_services.files, m_services.pictures, folder(), previous).value_or(QList<Sheet>());
    }

    // `prepare` makes the file system what it is to be before each load.
    void measure(char const* name, std::function<void(int repetition)> const& prepare)
    {
        double worst = 0;
        for (int repetition = 0; repetition < repetitions; ++repetition) {
            prepare(repetition);
            auto loaded = load(m_store.sheets);
            QElapsedTimer timer;
            timer.start();
            m_store.applyLoadedSheets(std::move(loaded), m_store.generation);
            worst = std::max(worst, static_cast<double>(timer.nsecsElapsed()) / 1e6);
            m_services.executor.settle();
        }
        std::printf("%-46s %7.2f ms   %d times told\n", name, worst, m_told);
        m_told = 0;
    }

    void run()
    {
        writeAll(0);
        m_store.connect(folder());
        m_services.executor.settle();
        m_told = 0;
        std::printf("%lld sheets of %lld bytes\n", static_cast<long long>(m_store.sheets.value().size()),
            static_cast<long long>(sheetSize));
        measure("nothing changed", [](int) { });
        measure("one sheet changed, the last in order",
            [this](int repetition) { m_services.files.write(folder(), nameOf(999), sheetText(999, repetition + 1)); });
        measure("every sheet changed", [this](int repetition) { writeAll(repetition + 100); });
        measure("no sheet can be read any more", [this](int) {
            for (int number = 0; number < sheetCount; ++number)
                m_services.files.put(folder(), nameOf(number), { .contents = "\xff" });
        });
        measureConnect();
    }

private:
    void measureConnect()
    {
        double worst = 0;
        for (int repetition = 0; repetition < repetitions; ++repetition) {
            writeAll(repetition);
            m_store.refresh();
            m_services.executor.settle();
            QElapsedTimer timer;
            timer.start();
            m_store.connect(folder());
            worst = std::max(worst, static_cast<double>(timer.nsecsElapsed()) / 1e6);
            m_services.executor.settle();
        }
        std::printf("%-46s %7.2f ms\n", "another folder connected", worst);
    }

    FakeLibraryServices m_services;
    LibraryStore m_store;
    QPropertyNotifier m_notifier;
    int m_told = 0; // how often observers heard of a new list
};

}

int main()
{
    Bench().run();
    return 0;
}
