// Google Benchmark entry point for benchmarks of Qt-based classes: runs them inside a QCoreApplication.
#include <benchmark/benchmark.h>

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
