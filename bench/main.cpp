#include "Pairs.h"

#include "RMTileManager64.h"

#include <QtCore/QtGlobal>

#include <malloc.h>

namespace {

void HideLog(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

int main(int argc, char** argv) {
    // Large blocks stay mapped once they are freed: neither side of a pair pays for page faults.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, -1);
    qInstallMessageHandler(HideLog);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    RMTileManager64::InitInstance();
    Pairs::Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintTable();
    RMTileManager64::ReleaseInstance();
    return 0;
}
