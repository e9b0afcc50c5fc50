// The Linux login item: a desktop entry in the autostart directory of a temporary XDG_CONFIG_HOME.
#include "Files.h"
#include "platform/linux/XdgAutostartLoginItem.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

using namespace orvane;
using namespace orvane::testing;

namespace {

struct XdgAutostartTest : ::testing::Test {
    QTemporaryDir dir;
    QByteArray savedConfigHome = qgetenv("XDG_CONFIG_HOME");
    XdgAutostartLoginItem item;

    void SetUp() override { qputenv("XDG_CONFIG_HOME", dir.filePath("config").toUtf8()); }
    void TearDown() override { qputenv("XDG_CONFIG_HOME", savedConfigHome); }

    QString entry() const { return dir.filePath("config/autostart/com.user.Orvane.desktop"); }
    QByteArray entryContents(const QString& path = {}) const { return readFile(path.isEmpty() ? entry() : path); }
    void writeEntry(const QByteArray& contents) {
        ASSERT_FALSE(item.registerItem());  // makes the directory
        ASSERT_TRUE(writeFile(entry(), contents));
    }
};

}  // namespace

TEST_F(XdgAutostartTest, registeringWritesAnEntryLaunchingThisExecutableAndUnregisteringRemovesIt) {
    EXPECT_EQ(item.status(), LoginItem::Status::notRegistered);

    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.status(), LoginItem::Status::enabled);
    const QByteArray exec = XdgAutostartLoginItem::execProgram(QCoreApplication::applicationFilePath()).toUtf8();
    EXPECT_TRUE(entryContents().startsWith("[Desktop Entry]\nType=Application\n"));
    EXPECT_TRUE(entryContents().contains("\nExec=" + exec + "\n"));

    EXPECT_EQ(item.unregisterItem(), std::nullopt);
    EXPECT_FALSE(QFile::exists(entry()));
    EXPECT_EQ(item.status(), LoginItem::Status::notRegistered);
    EXPECT_EQ(item.unregisterItem(), std::nullopt);  // nothing to remove is no failure
}

TEST_F(XdgAutostartTest, aPrivateInstanceHasAnEntryOfItsOwnThatStartsIt) {
    qputenv("ORVANE_INSTANCE", "check/1");
    EXPECT_EQ(item.registerItem(), std::nullopt);
    qunsetenv("ORVANE_INSTANCE");
    EXPECT_EQ(item.status(), LoginItem::Status::notRegistered);  // the user's own entry
    EXPECT_TRUE(entryContents(dir.filePath("config/autostart/com.user.Orvane-check_1.desktop"))
                    .contains("\nExec=env ORVANE_INSTANCE=check_1 /"));
}

TEST_F(XdgAutostartTest, switchedOffEntriesAreRewrittenAndEnabledOnesLeftAlone) {
    for (const QByteArray off : {"Hidden=true", "X-GNOME-Autostart-enabled=false"}) {
        writeEntry("[Desktop Entry]\nExec=/usr/bin/orvane\n" + off + "\n");
        EXPECT_EQ(item.status(), LoginItem::Status::notRegistered) << off.constData();
        EXPECT_EQ(item.registerItem(), std::nullopt);
        EXPECT_EQ(item.status(), LoginItem::Status::enabled) << off.constData();
    }
    // Keys of another group say nothing about the entry, and an enabled entry is not rewritten.
    const QByteArray own = "[Desktop Entry]\nExec=/opt/orvane --quiet\n[Desktop Action Quit]\nHidden=true\n";
    writeEntry(own);
    EXPECT_EQ(item.status(), LoginItem::Status::enabled);
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(entryContents(), own);
}

TEST_F(XdgAutostartTest, anUnusableConfigDirectoryFailsWithADescription) {
    ASSERT_TRUE(QFile(dir.filePath("config")).open(QIODevice::WriteOnly));  // a file where the directory should be
    const auto error = item.registerItem();
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->contains(dir.filePath("config/autostart"))) << error->toStdString();
    EXPECT_EQ(item.status(), LoginItem::Status::notRegistered);
}

TEST(XdgAutostartExec, programIsQuotedAndEscapedAsDesktopEntriesRequire) {
    const std::pair<const char*, const char*> cases[] = {
        {"/usr/bin/orvane", "/usr/bin/orvane"},
        {"/opt/My Apps/orvane", "\"/opt/My Apps/orvane\""},
        // Inside quotes $ and " take a backslash, which the string value then doubles.
        {"/home/a$b/say \"hi\"", "\"/home/a\\\\$b/say \\\\\"hi\\\\\"\""},
        {"/x/100%/orvane", "/x/100%%/orvane"},
    };
    for (const auto& [path, exec] : cases) EXPECT_EQ(XdgAutostartLoginItem::execProgram(QString::fromUtf8(path)), QString::fromUtf8(exec)) << path;
}
