// Runs every scenario file through the real orvane-sim binary and compares its whole output.
// A file holds comments (#), optional "options:" and "exit:" (default 0) lines and a "mappings:" section (the
// stored JSON), then "script:" and "expect:" (the exact standard output; line numbers count from the line after
// "script:"). Without --hidutil a scenario runs against tools/hidutil-ok.
#include "Files.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <filesystem>

namespace {

struct Scenario {
    QString options;
    int exitStatus = 0;
    std::optional<QByteArray> mappings;
    QByteArray script;
    QByteArray expected;
};

Scenario readScenario(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("cannot read " + path.toStdString());
    Scenario scenario;
    enum class Section { header, mappings, script, expect } section = Section::header;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (section != Section::expect && line == "script:") section = Section::script;
        else if (section == Section::script && line == "expect:") section = Section::expect;
        else if (section == Section::header && line == "mappings:") { section = Section::mappings; scenario.mappings = QByteArray(); }
        else if (section == Section::script) scenario.script += line + '\n';
        else if (section == Section::expect) scenario.expected += line + '\n';
        else if (section == Section::mappings) scenario.mappings->append(line.trimmed());
        else if (line.startsWith("options:")) scenario.options = QString::fromUtf8(line.mid(8)).trimmed();
        else if (line.startsWith("exit:")) scenario.exitStatus = line.mid(5).trimmed().toInt();
    }
    // The file's last newline ends the last expected line; it adds no empty line.
    while (scenario.expected.endsWith("\n\n")) scenario.expected.chop(1);
    if (scenario.expected == "\n") scenario.expected.clear();
    return scenario;
}

std::vector<std::string> scenarioFiles() {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(ORVANE_SCENARIO_DIR))
        if (entry.path().extension() == ".scenario") files.push_back(entry.path().filename().string());
    std::sort(files.begin(), files.end());
    return files;
}

class ScenarioTest : public ::testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(ScenarioTest, producesTheExpectedOutput) {
    const QDir dir(ORVANE_SCENARIO_DIR);
    const Scenario scenario = readScenario(dir.filePath(QString::fromStdString(GetParam())));
    QTemporaryDir scratch;
    QStringList arguments = QProcess::splitCommand(scenario.options);
    if (!arguments.contains("--hidutil")) arguments << "--hidutil" << dir.filePath("tools/hidutil-ok");
    if (scenario.mappings) {
        ASSERT_TRUE(orvane::testing::writeFile(scratch.filePath("mappings.json"), *scenario.mappings));
        arguments << "--mappings" << scratch.filePath("mappings.json");
    }
    ASSERT_TRUE(orvane::testing::writeFile(scratch.filePath("script.txt"), scenario.script));
    arguments << scratch.filePath("script.txt");

    QProcess sim;
    sim.setWorkingDirectory(dir.path());
    sim.setStandardInputFile(QProcess::nullDevice());
    sim.start(ORVANE_SIM_BINARY, arguments);
    ASSERT_TRUE(sim.waitForFinished(120000)) << "orvane-sim did not finish";
    const QByteArray errors = sim.readAllStandardError();
    EXPECT_EQ(sim.readAllStandardOutput().toStdString(), scenario.expected.toStdString()) << errors.toStdString();
    EXPECT_EQ(sim.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(sim.exitCode(), scenario.exitStatus) << errors.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioTest, ::testing::ValuesIn(scenarioFiles()), [](const auto& info) {
    std::string name = info.param.substr(0, info.param.rfind('.'));
    std::replace_if(name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
});
