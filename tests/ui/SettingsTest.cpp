// What is kept in files and given on the command line: configuration, ports, folders, options.

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <fstream>

#include "app/CommandLine.h"
#include "app/Configuration.h"
#include "app/ProgramFolder.h"
#include "platform/Files.h"
#include "platform/PortMap.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSpanish = "Espa\xF1ol";

struct StoredCase {
    const char* name;
    std::string bytes;
    Configuration expected;
};

TEST(ConfigurationTest, ReadsWhatIsThereAndDefaultsTheRest) {
    const std::vector<StoredCase> cases = {
        {"highest port", "\" 30\",\"English\",\" 1\",\"-2\",\"\"\r\n", {30, "English", " 1", "-2"}},
        {"port 31", "\" 31\",\"English\",\" 0\",\" 0\"\r\n", {1, "English", " 0", " 0"}},
        {"port 0", "\" 0\",\"Francais\",\" 0\",\" 0\"\r\n", {1, "Francais", " 0", " 0"}},
        {"port beyond any integer", "\"99999999999\",\"English\"", {1, "English", " 0", " 0"}},
        {"no number", "\"COM3\",\"English\",\"\",\"\"\n", {1, "English", "", ""}},
        {"unknown language", "\" 2\",\"Klingon\",\" 0\",\" 0\"\n", {2, "English", " 0", " 0"}},
        {"UTF-8", "\" 4\",\"Espa\xC3\xB1ol\",\" 0\",\" 0\",\"\"\n", {4, kSpanish, " 0", " 0"}},
        {"no quotes", "5,Deutsch,x,y", {5, "Deutsch", "x", "y"}},
        {"empty", "", {1, "English", " 0", " 0"}},
        {"only a port", "\" 7\"", {7, "English", " 0", " 0"}},
    };
    for (const StoredCase& row : cases) {
        const Configuration read = parseConfiguration(row.bytes);
        EXPECT_EQ(read.portNumber, row.expected.portNumber) << row.name;
        EXPECT_EQ(read.language, row.expected.language) << row.name;
        EXPECT_EQ(read.reserved1, row.expected.reserved1) << row.name;
        EXPECT_EQ(read.reserved2, row.expected.reserved2) << row.name;
    }
}

TEST(ConfigurationTest, WritesOneLineThatReadsBack) {
    EXPECT_EQ(configurationLine({3, "Deutsch", " 0", " 0"}, ""),
              "\" 3\",\"Deutsch\",\" 0\",\" 0\",\"\"\r\n");
    const std::string line = configurationLine({30, kSpanish, "a,b", ""}, "OK\"\r\n\x02?");
    EXPECT_EQ(line, "\" 30\",\"Espa\xF1ol\",\"a,b\",\"\",\"OK?\"\r\n");
    EXPECT_EQ(configurationLine(parseConfiguration(line), "OK?"), line);
}

TEST(PortMapTest, KnowsTheUsualDevicesOfEachSystem) {
    const PortMap linux(PortMap::System::unixLike);
    // The first and the last of each kind.
    const std::vector<std::pair<int, std::string>> usual = {{1, "/dev/ttyS0"},
                                                            {4, "/dev/ttyS3"},
                                                            {5, "/dev/ttyUSB0"},
                                                            {12, "/dev/ttyUSB7"},
                                                            {13, "/dev/ttyACM0"},
                                                            {20, "/dev/ttyACM7"},
                                                            {21, ""},
                                                            {0, ""},
                                                            {31, ""}};
    for (const auto& [number, device] : usual) EXPECT_EQ(linux.device(number), device) << number;
    const PortMap windows(PortMap::System::windows);
    EXPECT_EQ(windows.device(1), "COM1");
    EXPECT_EQ(windows.device(30), "COM30");
    EXPECT_EQ(windows.device(31), "");
}

TEST(PortMapTest, TheFileOverridesTheTableAndTheCommandLineBoth) {
    PortMap map(PortMap::System::unixLike);
    map.assign(6, "/dev/six");
    map.readLines(
        "5, /dev/serial/by-id/usb box\r\n6,/dev/other\n\nseven,/dev/x\n31,/dev/x\n0,/dev/x\n"
        "8,\n9/dev/x\n 22 ,/dev/pts/3");
    EXPECT_EQ(map.device(5), "/dev/serial/by-id/usb box");
    EXPECT_EQ(map.device(6), "/dev/six");
    EXPECT_EQ(map.device(8), "/dev/ttyUSB3");
    EXPECT_EQ(map.device(9), "/dev/ttyUSB4");
    EXPECT_EQ(map.device(22), "/dev/pts/3");
    EXPECT_EQ(map.device(0) + map.device(31), "") << "there are no such ports";
}

TEST(FilesTest, AWrittenFileStandsAlone) {
    const QTemporaryDir directory;
    const fs::path folder(directory.path().toStdString());
    writeFileWhole(folder / "x", "before");
    writeFileWhole(folder / "x", "after");
    EXPECT_EQ(readFile(folder / "x"), "after");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << "nothing is left beside it";
}

CommandLine parsed(std::initializer_list<std::string> arguments) {
    return parseCommandLine(std::vector<std::string>(arguments));
}

TEST(CommandLineTest, TakesItsOptionsAndLeavesTheRest) {
    const CommandLine all = parsed({"--folder", "/tmp/a b", "--port", "5=/dev/x=y", "run.txt",
                                    "--port=6=/dev/z", "--simulate", "ME181", "--virtual-time"});
    EXPECT_EQ(all.error, "");
    EXPECT_EQ(all.folder, fs::path("/tmp/a b"));
    ASSERT_EQ(all.ports.size(), 2U);
    EXPECT_EQ(all.ports[0], std::pair(5, std::string("/dev/x=y")));
    EXPECT_EQ(all.ports[1], std::pair(6, std::string("/dev/z")));
    ASSERT_TRUE(all.simulate);
    EXPECT_EQ(all.simulate->maker, "Mars");
    EXPECT_EQ(all.simulate->model, "ME181");
    EXPECT_EQ(all.rest, (std::vector<std::string>{"run.txt", "--virtual-time"}));
}

TEST(CommandLineTest, TheModelOfTheSimulatorMayBeLeftOut) {
    EXPECT_EQ(parsed({"--simulate"}).simulate->model, "ME111");
    const CommandLine script = parsed({"--simulate", "demo.txt"});
    EXPECT_EQ(script.simulate->model, "ME111");
    EXPECT_EQ(script.rest, std::vector<std::string>{"demo.txt"});
    EXPECT_EQ(parsed({"--simulate", "ms1400"}).simulate->model, "MS1400");
    EXPECT_EQ(parsed({"--simulate=435"}).simulate->maker, "CC");
}

TEST(CommandLineTest, SaysWhatIsWrong) {
    for (const auto& arguments : {std::vector<std::string>{"--folder"},
                                  {"--port", "31=/dev/x"},
                                  {"--port", "5"},
                                  {"--port", "x=y"},
                                  {"--simulate=ME999"},
                                  {"--folder="}}) {
        EXPECT_NE(parseCommandLine(arguments).error, "") << arguments.front();
    }
}

class FolderTest : public ::testing::Test {
  protected:
    fs::path make(const fs::path& name) {
        fs::create_directories(root / name);
        return root / name;
    }
    static void put(const fs::path& file, const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    QTemporaryDir directory;
    fs::path root{directory.path().toStdString()};
};

TEST_F(FolderTest, PrefersTheGivenThenTheWritableThenThePerUserOne) {
    FolderPlaces places{.besideProgram = make("program"),
                        .installedData = root / "none",
                        .perUser = root / "user",
                        .given = root / "given"};
    EXPECT_EQ(chooseProgramFolder(places), root / "given");
    EXPECT_TRUE(fs::is_directory(root / "given"));
    places.given.reset();
    EXPECT_EQ(chooseProgramFolder(places), root / "program");
    places.besideProgram = root / "not there";
    EXPECT_EQ(chooseProgramFolder(places), root / "user");
    EXPECT_TRUE(fs::is_directory(root / "user"));
}

TEST_F(FolderTest, AnInstalledProgramKeepsOutOfTheSystemsFolders) {
    put(root / "share" / "accept.wav", "new");
    const FolderPlaces places{.besideProgram = make("bin"),
                              .installedData = root / "share",
                              .perUser = root / "user",
                              .given = {}};
    EXPECT_EQ(chooseProgramFolder(places), root / "user");
    EXPECT_EQ(readFile(root / "user" / "accept.wav"), "new");
    EXPECT_TRUE(fs::is_empty(root / "bin"));
}

TEST_F(FolderTest, OnlyANewFolderIsSeededAndNothingIsOverwritten) {
    put(root / "data" / "CoinSets" / "a.cst", "a");
    put(root / "data" / "accept.wav", "new");
    put(root / "data" / "make.py", "tool");
    const fs::path fresh = make("fresh");
    put(fresh / "accept.wav", "mine");
    seedFolder(fresh, root / "data");
    EXPECT_EQ(readFile(fresh / "CoinSets" / "a.cst"), "a");
    EXPECT_EQ(readFile(fresh / "accept.wav"), "mine");
    EXPECT_FALSE(fs::exists(fresh / "make.py"));

    const fs::path used = make("used");
    put(used / "config0000.txt", "x");
    seedFolder(used, root / "data");
    EXPECT_FALSE(fs::exists(used / "CoinSets"));
}

}  // namespace
}  // namespace vantor
