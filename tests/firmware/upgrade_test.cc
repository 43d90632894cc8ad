// The steps of an upgrade: what each runs, and where it leads.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "upgrade_fixture.h"

namespace kio::test {
namespace {

using Commands = std::vector<std::string>;

TEST_F(UpgradeTest, ReportWritesTheStatusAndNothingElse) {
  EXPECT_EQ(Act('9'), Commands{});
  EXPECT_EQ(Status(), Document("<result>0</result>"));
  EXPECT_TRUE(host_.Writes().empty());
}

TEST_F(UpgradeTest, InitRemovesTheFilesAndWhatWasFound) {
  host_.Set("/fwupgradeinfo/newfw/fileurl", "a");
  host_.Set("/fwupgradeinfo/newfw/notesurl", "b");
  for (const char* const file : {"upld.bin", "rssfwnotes.xml", "rssfwtmp.txt", "AB12.xml"}) {
    WriteFile(Path(file), "x");
  }
  const std::string expected = "rm -f \"" + Path("rsscheckfw.xml") + "\" \"" + Path("upld.bin") +
                               "\" \"" + Path("rssfwnotes.xml") + "\" \"" + Path("rssfwtmp.txt") +
                               "\"";
  EXPECT_EQ(Act('0'), Commands{expected});
  EXPECT_FALSE(FileExists(Path("upld.bin")));
  EXPECT_FALSE(FileExists(Path("rssfwnotes.xml")));
  EXPECT_FALSE(FileExists(Path("rssfwtmp.txt")));
  EXPECT_TRUE(FileExists(Path("AB12.xml")));
  EXPECT_EQ(Status(), Document("<result>0</result>"));
  EXPECT_EQ(host_.Text("/fwupgradeinfo/newfw/fileurl"), std::nullopt);
  EXPECT_EQ(host_.Text("/fwupgradeinfo/newfw/notesurl"), std::nullopt);
  const std::vector<StoreCall> deleted = {{StoreCall::Kind::kDelete, "/fwupgradeinfo/newfw", ""}};
  EXPECT_EQ(host_.Writes(), deleted);
}

TEST_F(UpgradeTest, InitQuotesTheDirectory) {
  const std::string folder = Path("a b");
  std::filesystem::create_directory(folder);
  std::snprintf(rssXmlData.tmpPath, sizeof(rssXmlData.tmpPath), "%s", folder.c_str());
  EXPECT_EQ(Act('0'),
            Commands{"rm -f \"" + folder + "/rsscheckfw.xml\" \"" + folder + "/upld.bin\" \"" +
                     folder + "/rssfwnotes.xml\" \"" + folder + "/rssfwtmp.txt\""});
}

TEST_F(UpgradeTest, ImageNameIsTheStores) {
  host_.Set("/fwupgradeinfo/fwupgradefn", "my image.bin");
  EXPECT_EQ(Act('0')[0], "rm -f \"" + Path("rsscheckfw.xml") + "\" \"" + Path("my image.bin") +
                             "\" \"" + Path("rssfwnotes.xml") + "\" \"" + Path("rssfwtmp.txt") +
                             "\"");
  GoToFound();
  EXPECT_EQ(Act('2')[0], "wget -O \"" + Path("my image.bin") + "\" \"" +
                             Address("/fw/AB12_FW1.0.8_0312.bin") + "\" &");
  WriteFile(Path("my image.bin"), "12345");
  Act('9');
  EXPECT_EQ(Status(), Found(3, "", "5"));
}

TEST_F(UpgradeTest, DefaultsAreWrittenIntoTheStore) {
  host_.Delete("/fwupgradeinfo/fwupgradefn");
  Act('0');
  EXPECT_EQ(host_.Text("/fwupgradeinfo/fwupgradefn"), "upld.bin");
  EXPECT_EQ(host_.Text("/fwupgradeinfo/urlgetcmd"), std::nullopt);
  Act('1');
  EXPECT_EQ(host_.Text("/fwupgradeinfo/urlgetcmd"), "wget -O \"$savefn\" \"$url\"");
}

TEST_F(UpgradeTest, SearchFetchesTheListOfTheModel) {
  EXPECT_EQ(Act('1'),
            Commands{"wget -O \"" + Path("AB12.xml") + "\" \"" + Address("/AB12/AB12.xml") + "\""});
  EXPECT_EQ(Status(), Document("<result>-1</result>")) << "no list";
}

TEST_F(UpgradeTest, ModelIsTheNameBeforeTheFirstUnderscore) {
  for (const auto& [name, model] :
       {std::pair{"AB12", "AB12"}, std::pair{"A_B_C", "A"}, std::pair{"_FW1", ""},
        std::pair{"", ""}, std::pair{"a.bin", "a.bin"}}) {
    Act('0');
    host_.Set("/fwupgradeinfo/currfwfilename", name);
    EXPECT_EQ(Act('1'), Commands{"wget -O \"" + Path(std::string(model) + ".xml") + "\" \"" +
                                 Address("/" + std::string(model) + "/" + model + ".xml") + "\""});
  }
}

TEST_F(UpgradeTest, SearchWithoutANewerFile) {
  server_[Address("/AB12/AB12.xml")] = FirmwareList("");
  EXPECT_EQ(Act('1').size(), 1U);
  EXPECT_EQ(Status(), Document("<result>1</result>"));
  Act('0');
  server_[Address("/AB12/AB12.xml")] = FirmwareList(Entry(MacList({"*"}), "AB12_FW1.0.2"));
  EXPECT_EQ(Act('1').size(), 1U);
  EXPECT_EQ(Status(), Document("<result>1</result>")) << "the file that runs";
}

TEST_F(UpgradeTest, SearchWithAListThatIsNotValid) {
  server_[Address("/AB12/AB12.xml")] = "<html>404</html>";
  EXPECT_EQ(Act('1').size(), 1U);
  EXPECT_EQ(Status(), Document("<result>-1</result>"));
}

TEST_F(UpgradeTest, SearchThatFindsFetchesTheNotes) {
  server_[Address("/AB12/AB12.xml")] = FirmwareList(Entry(MacList({"*"}), "fw/AB12_FW1.0.8_0312"));
  const Commands expected = {
      "wget -O \"" + Path("AB12.xml") + "\" \"" + Address("/AB12/AB12.xml") + "\"",
      "wget -O \"" + Path("rssfwnotes.xml") + "\" \"" + Address("/fw/AB12_FW1.0.8_0312.txt") +
          "\" &"};
  EXPECT_EQ(Act('1'), expected);
  EXPECT_EQ(Status(), Found(2));
}

// Of a list, 4096 characters are read.
TEST_F(UpgradeTest, SearchReads4096Characters) {
  const std::string list = FirmwareList(Entry(MacList({"*"}), "fw/AB12_FW1.0.8_0312"));
  const std::string fits = std::string(4096 - list.size(), ' ') + list;
  server_[Address("/AB12/AB12.xml")] = fits + "more";
  Act('1');
  EXPECT_EQ(Status(), Found(2));
  Act('0');
  server_[Address("/AB12/AB12.xml")] = " " + fits;
  Act('1');
  EXPECT_EQ(Status(), Document("<result>-1</result>"));
  Act('0');
  server_[Address("/AB12/AB12.xml")] = list + std::string(1000000, 'x');
  Act('1');
  EXPECT_EQ(Status(), Found(2));
}

TEST_F(UpgradeTest, SearchReadsTheDirectoryAgain) {
  std::snprintf(rssXmlData.tmpPath, sizeof(rssXmlData.tmpPath), "/elsewhere");
  Act('1');
  EXPECT_EQ(rssXmlData.tmpPath, directory_.path());
}

// Before the step, which needs it: the status document at its end would read it by itself.
TEST_F(UpgradeTest, DirectoryIsReadWhenItIsNotKnown) {
  const Commands removal = Act('0');
  ASSERT_EQ(removal.size(), 1U);
  ASSERT_EQ(removal[0].find("rm -f \"" + Path("rsscheckfw.xml") + "\""), 0U);
  rssXmlData.tmpPath[0] = '\0';
  EXPECT_EQ(Act('0'), removal);
  EXPECT_EQ(rssXmlData.tmpPath, directory_.path());
  const std::vector<StoreCall>& calls = host_.calls();
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls[0],
            (StoreCall{StoreCall::Kind::kGetText, "/zentrolinks/tempdirecory", directory_.path()}));
}

TEST_F(UpgradeTest, KnownDirectoryIsNotReadAgain) {
  host_.Set("/zentrolinks/tempdirecory", "/elsewhere");
  EXPECT_EQ(Act('0')[0].find("rm -f \"" + Path("rsscheckfw.xml") + "\""), 0U);
  EXPECT_EQ(rssXmlData.tmpPath, directory_.path());
  for (const StoreCall& call : host_.calls()) {
    EXPECT_NE(call.path, "/zentrolinks/tempdirecory");
  }
}

TEST_F(UpgradeTest, DownloadRunsInTheBackground) {
  GoToFound();
  EXPECT_EQ(Act('2'), Commands{"wget -O \"" + Path("upld.bin") + "\" \"" +
                               Address("/fw/AB12_FW1.0.8_0312.bin") + "\" &"});
  EXPECT_EQ(Status(), Found(3));
}

// Only for the image is the template trimmed.
TEST_F(UpgradeTest, TemplateIsTheStores) {
  host_.Set("/fwupgradeinfo/urlgetcmd", " \tfetch $lanip:$rssport '$url' > \"$savefn\"\t ");
  host_.Set("/runtime/zentrolinks/lanip", "192.168.1.1");
  host_.Set("/zentrolinks/rsshttpport", 8080);
  WriteFile(Path("AB12.xml"), FirmwareList(Entry(MacList({"*"}), "fw/AB12_FW1.0.8_0312")));
  const std::string fetch = "fetch 192.168.1.1:8080 '";
  const Commands expected = {
      " \t" + fetch + Address("/AB12/AB12.xml") + "' > \"" + Path("AB12.xml") + "\"\t ",
      " \t" + fetch + Address("/fw/AB12_FW1.0.8_0312.txt") + "' > \"" + Path("rssfwnotes.xml") +
          "\"\t  &"};
  EXPECT_EQ(Act('1'), expected);
  EXPECT_EQ(Act('2'), Commands{fetch + Address("/fw/AB12_FW1.0.8_0312.bin") + "' > \"" +
                               Path("upld.bin") + "\" &"});
  EXPECT_EQ(Act('9'),
            Commands{"echo `ps aux |grep \"fetch 192.168.1\"` > \"" + Path("rssfwtmp.txt") + "\""});
}

TEST_F(UpgradeTest, TemplateWithoutAFileIsRunAsItStands) {
  host_.Set("/fwupgradeinfo/urlgetcmd", "fetch \"$url\"");
  WriteFile(Path("AB12.xml"), FirmwareList(Entry(MacList({"*"}), "n")));
  const Commands expected = {"fetch \"$url\"", "fetch \"$url\" &"};
  EXPECT_EQ(Act('1'), expected);
  EXPECT_EQ(Act('2'), Commands{"fetch \"$url\" &"});
}

TEST_F(UpgradeTest, LongPathsAndAddressesAreCutAt127Characters) {
  host_.Set("/fwupgradeinfo/currfwfilename", std::string(120, 'm') + "_FW");
  const std::string model(120, 'm');
  EXPECT_EQ(Act('1'), Commands{"wget -O \"" + Path(model + ".xml").substr(0, 127) + "\" \"" +
                               Address("/" + model + "/" + model + ".xml").substr(0, 127) + "\""});
}

// While a download runs, every action but '0' looks whether it still does.
TEST_F(UpgradeTest, ProgressIsSeenInTheListOfProcesses) {
  GoToDownloading();
  const std::string tag = Tag();
  const std::string running = "root 7 wget -O " + Path("upld.bin") + " http://x";
  const std::string grep = "root 9 grep " + tag;
  const Commands expected = {"echo `ps aux |grep \"" + tag + "\"` > \"" + Path("rssfwtmp.txt") +
                             "\""};
  for (const std::string& text :
       {std::string(running).append(" ").append(grep), std::string(), running,
        std::string("root 9 grep x"), "xgrep " + tag, "root 9 grep" + tag.substr(1),
        running + " grep", "x" + tag + " grep "}) {
    processes_ = text;
    for (const int action : {int{'9'}, int{'1'}, int{'2'}, int{'4'}, int{'x'}, 0, -1}) {
      EXPECT_EQ(Act(action), expected);
      EXPECT_EQ(Status(), Found(3)) << text;
    }
  }
  processes_ = std::string(grep).append(" ").append(running);
  EXPECT_EQ(Act('2'), expected);
  EXPECT_EQ(Status(), Found(4)) << "the search comes first, so it is taken to be alone";
}

TEST_F(UpgradeTest, DownloadEndsWhenTheSearchIsAlone) {
  GoToDownloading();
  processes_ = "root 9 0.0 sh -c ps aux |grep \"" + Tag() + "\" root 10 grep " + Tag();
  Act('9');
  EXPECT_EQ(Status(), Found(4));
  EXPECT_EQ(Act('9'), Commands{}) << "no more progress to be seen";
  EXPECT_EQ(Status(), Found(4));
}

TEST_F(UpgradeTest, ProcessListThatCannotBeReadKeepsTheStatus) {
  GoToDownloading();
  host_.on_command = nullptr;
  host_.run_commands = false;
  std::filesystem::remove(Path("rssfwtmp.txt"));
  Act('9');
  EXPECT_EQ(Echoes().back(), "echo '<result>3</result></root>' >> " + Path("rsscheckfw.xml"));
}

// 4096 characters of the list of processes are read.
TEST_F(UpgradeTest, LongProcessListsAreCut) {
  GoToDownloading();
  const std::string grep = " grep " + Tag();
  processes_ = std::string(4097 - grep.size(), 'x') + grep;
  Act('9');
  EXPECT_EQ(Status(), Found(3));
  processes_ = std::string(4096 - grep.size(), 'x') + grep + std::string(100000, 'y');
  Act('9');
  EXPECT_EQ(Status(), Found(4));
}

TEST_F(UpgradeTest, InitEndsADownload) {
  GoToDownloading();
  EXPECT_EQ(Act('0').size(), 1U);
  EXPECT_EQ(Status(), Document("<result>0</result>"));
}

TEST_F(UpgradeTest, UpgradeIsAnnounced) {
  GoToDownloaded();
  log_file::Start(6);
  EXPECT_EQ(Act('4'), Commands{});
  EXPECT_EQ(log_file::Lines(), std::vector<std::string>{"[exe_ExternalCall,FwUpgrade]"});
  EXPECT_EQ(Status(), Document("<time>50</time>\n<fwsize>0</fwsize>\n<fwver>1.0.8</fwver>\n"
                               "<result>5</result>"));
  Act('9');
  EXPECT_EQ(Status(), Found(5));
  Act('0');
  EXPECT_EQ(Status(), Document("<result>0</result>"));
}

// The tag of a download may hold what the shell knows. A short directory leaves room for it.
TEST_F(UpgradeTest, TagRunsNothing) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::create_directory(Path("k"));
  std::filesystem::current_path(directory_.path());
  for (const char* const tool : {"$(touch X)", "`touch X`", "\\$(touch X)", "\\", "$HOME"}) {
    Act('0');
    host_.Set("/fwupgradeinfo/fwupgradefn", tool);
    host_.Set("/fwupgradeinfo/urlgetcmd", "w \"$savefn\" \"$url\"");
    host_.Set("/zentrolinks/tempdirecory", "k");
    WriteFile("k/AB12.xml", FirmwareList(Entry(MacList({"*"}), "n")));
    Act('1');
    Act('2');
    const Commands progress = Act('9');
    ASSERT_EQ(progress.size(), 1U);
    host_.on_command = nullptr;
    host_.run_commands = true;
    // What is run there stays there; `ps` shows the pattern that it is asked for.
    host_.RunCommand(
        ("cd " + directory_.path() + "; grep() { printf %s \"$1\" > pattern; }; " + progress[0])
            .c_str());
    EXPECT_FALSE(FileExists(Path("X"))) << progress[0];
    EXPECT_EQ(ReadFile(Path("pattern")),
              ("w k/" + std::string(tool) + " http://firmware").substr(0, 15))
        << progress[0];
    host_.on_command = nullptr;
    host_.run_commands = false;
  }
  std::filesystem::current_path(before);
}

TEST_F(UpgradeTest, CommandThatIsTooLongIsNotRun) {
  GoToFound();
  std::string command_template = "$savefn";
  while (command_template.size() < 251) {
    command_template += "$url";
  }
  host_.Set("/fwupgradeinfo/urlgetcmd", command_template);
  Put(fwXmlData.fileUrl, std::string(127, 'u'));
  host_.Set("/fwupgradeinfo/newfw/fileurl", std::string(127, 'u'));
  EXPECT_EQ(Act('2'), Commands{});
}

}  // namespace
}  // namespace kio::test
