// The client of network ports against servers that others wrote: ser2net on a pseudo terminal, and
// pyserial's port manager over a fake serial object. Both are Debian packages; without them these
// tests are skipped.
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdlib>

#include "network_world.h"
#include "platform/posix/pty_wire.h"
#include "platform/posix/termios_settings.h"

namespace penlog {
namespace {

/// The output of a child process, line by line; it ends with the test.
struct Child {
  ~Child() {
    process.closeWriteChannel();
    if (process.waitForFinished(500)) return;
    process.kill();
    process.waitForFinished(1000);
  }
  void Start(const QString& program, const QStringList& words) {
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, words);
  }
  void Say(const std::string& line) { process.write((line + "\n").c_str()); }
  const std::vector<std::string>& Lines() {
    while (process.canReadLine()) {
      lines.push_back(process.readLine().trimmed().toStdString());
    }
    return lines;
  }
  bool Told(const std::string& line) {
    const auto& told = Lines();
    return std::find(told.begin(), told.end(), line) != told.end();
  }
  std::string All() {
    std::string text;
    for (const auto& line : Lines()) text += line + "\n";
    return text;
  }

  QProcess process;
  std::vector<std::string> lines;
};

struct Pyserial : testing::Test {
  void SetUp() override {
    const bool there = QProcess::execute("/usr/bin/python3", {"-c", "import serial.rfc2217"}) == 0;
    if (!there) GTEST_SKIP() << "python3-serial is missing: install it to run this test";
    server.Start("/usr/bin/python3", {PENLOG_SOURCE_DIR "/tests/platform_qt/pyserial_server.py"});
    ASSERT_TRUE(world.Until([&] { return !server.Lines().empty(); }, 5 * kSecond));
    const std::string& first = server.lines[0];
    ASSERT_EQ(first.substr(0, 5), "port ") << server.All();
    world.ports.servers[5] = {"127.0.0.1", std::atoi(first.c_str() + 5)};
  }

  NetworkWorld world;
  Child server;
  HeardPort near{5, "19200,E,7,2"};
};

TEST_F(Pyserial, SettingsAreTakenUpAndOutputsAreFalseAtOpening) {
  EXPECT_TRUE(ThePorts().Exists(5));
  ASSERT_EQ(FaultOfOpening(near.port), "");
  for (const char* told : {"baudrate 19200", "bytesize 7", "parity E", "stopbits 2", "dtr False",
                           "rts False", "rtscts False", "xonxoff False"}) {
    EXPECT_TRUE(world.Until([&] { return server.Told(told); })) << told << "\n" << server.All();
  }
}

TEST_F(Pyserial, OutputsBreakAndPurgeReachThePort) {
  ASSERT_EQ(FaultOfOpening(near.port), "");
  near.port.SetDTREnable(true);
  near.port.SetRTSEnable(true);
  near.port.SetBreak(true);
  near.port.SetBreak(false);
  near.port.ClearInBuffer();
  near.port.ClearOutBuffer();
  EXPECT_TRUE(world.Until([&] { return server.Told("purge out"); })) << server.All();
  for (const char* told :
       {"dtr True", "rts True", "break_condition True", "break_condition False", "purge in"}) {
    EXPECT_TRUE(server.Told(told)) << told << "\n" << server.All();
  }
}

TEST_F(Pyserial, EndLowersTheOutputsBeforeTheConnectionGoes) {
  ASSERT_EQ(FaultOfOpening(near.port), "");
  near.port.SetDTREnable(true);
  near.port.SetRTSEnable(true);
  ASSERT_TRUE(world.Until([&] { return server.Told("rts True"); }));
  server.lines.clear();
  near.port.Close();
  EXPECT_TRUE(world.Until([&] { return server.Told("rts False"); })) << server.All();
  EXPECT_TRUE(server.Told("dtr False")) << server.All();
}

struct DeafSink : PortSink {
  void Received(std::string) override {}
  void LinesChanged(ModemLines) override {}
  void LinesKnown(ModemLines) override {}
  void EdgesLost(std::int64_t) override {}
  void EdgesPolled() override {}
  void Vanished() override {}
};

TEST_F(Pyserial, EndOfTheProgramWaitsUntilTheOutputsHaveFallen) {
  DeafSink sink;
  {
    Rfc2217Ports ports(world.clock);
    const auto port = ports.Open(world.ports.servers[5], {}, sink);
    ASSERT_TRUE(world.Until([&] { return port->Ready(); }, 5 * kSecond));
    port->SetRts(true);
    ASSERT_TRUE(world.Until([&] { return server.Told("rts True"); }));
    server.lines.clear();
  }
  // Nothing of ours runs any more: what the server hears now was sent before the end.
  ASSERT_TRUE(server.process.waitForReadyRead(2000));
  EXPECT_TRUE(world.Until([&] { return server.Told("rts False"); })) << server.All();
}

TEST_F(Pyserial, EveryByteValuePassesBothWays) {
  ASSERT_EQ(FaultOfOpening(near.port), "");
  const std::string bytes = AllByteValues();
  const std::string hex = QByteArray(bytes.data(), 256).toHex().toStdString();
  near.port.Output(bytes);
  EXPECT_TRUE(world.Until([&] { return server.Told("data " + hex); })) << server.All();
  server.Say("data " + hex);
  EXPECT_TRUE(world.Until([&] { return near.bytes.size() >= 256; }));
  EXPECT_EQ(near.bytes, bytes);
}

TEST_F(Pyserial, LinesAtOpeningAreKnownAndEachEdgeIsOneEvent) {
  server.Say("lines 1 0 1");
  world.RunFor(50 * kMillisecond);
  ASSERT_EQ(FaultOfOpening(near.port), "");
  EXPECT_TRUE(near.port.CTSHolding());
  EXPECT_FALSE(near.port.DSRHolding());
  EXPECT_TRUE(near.port.CDHolding());
  EXPECT_TRUE(near.heard.empty());
  for (int i = 0; i < 50; ++i) {
    server.Say("lines 0 0 1");
    server.Say("lines 0 1 1");
    server.Say("lines 1 1 1");
    server.Say("lines 1 0 1");
  }
  server.Say("lines 0 1 0");
  EXPECT_TRUE(world.Until([&] { return near.port.EdgeCount() >= 201; }));
  EXPECT_EQ(near.port.EdgeCount(), 201) << "several lines in one notification are one event";
  EXPECT_EQ(near.Count(kCommCts), 101);
  EXPECT_EQ(near.Count(kCommDsr), 101);
  EXPECT_EQ(near.Count(kCommCd), 1);
  EXPECT_EQ(near.port.EdgesLostCount(), 0);
}

TEST_F(Pyserial, HangUpIsToldOnce) {
  ASSERT_EQ(FaultOfOpening(near.port), "");
  server.Say("hangup");
  EXPECT_TRUE(world.Until([&] { return near.port.Gone(); }));
  world.RunFor(100 * kMillisecond);
  EXPECT_EQ(near.heard, std::vector<int>{kCommPortGone});
}

struct Ser2net : testing::Test {
  static constexpr const char* kProgram = "/usr/sbin/ser2net";

  void SetUp() override {
    if (!QFile::exists(kProgram)) GTEST_SKIP() << "ser2net is missing: install it to run this test";
    wire = std::make_unique<PtyWire>(world.clock.io(), folder.filePath("line").toStdString());
    wire->OnOpened = [this](const PortSettings& settings) { opened = settings; };
    wire->OnBytes = [this](std::string_view text) { sent += text; };
    const int port = FreePort();
    const QString config = QString(
                               "connection: &line\n"
                               "    accepter: telnet(rfc2217=true),tcp,127.0.0.1,%1\n"
                               "    connector: serialdev,%2,9600n81,local\n")
                               .arg(port)
                               .arg(folder.filePath("line"));
    server.Start(kProgram, {"-n", "-u", "-Y", config});
    ASSERT_TRUE(world.Until([&] { return Listens(port); }, 5 * kSecond)) << server.All();
    world.ports.servers[5] = {"127.0.0.1", port};
    EXPECT_TRUE(ThePorts().Exists(5));
  }
  static bool Listens(int port) {
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", static_cast<quint16>(port));
    return socket.waitForConnected(100);
  }
  static int FreePort() {
    QTcpServer listener;
    listener.listen(QHostAddress::LocalHost);
    return listener.serverPort();
  }

  NetworkWorld world;
  QTemporaryDir folder;
  std::unique_ptr<PtyWire> wire;
  Child server;
  PortSettings opened;
  std::string sent;
  HeardPort near{5};
};

TEST_F(Ser2net, OptionsAndSettingsAreAgreed) {
  EXPECT_EQ(FaultOfOpening(near.port), "");
  EXPECT_TRUE(near.port.PortOpen());
  near.port.Output("x");
  EXPECT_TRUE(world.Until([&] { return sent == "x"; }));
  world.RunFor(50 * kMillisecond);
  EXPECT_EQ(ReadPortSettings(wire->Descriptor()), (PortSettings{19200, 'N', 8, 1}));
}

TEST_F(Ser2net, EveryByteValuePassesBothWays) {
  ASSERT_EQ(FaultOfOpening(near.port), "");
  const std::string bytes = AllByteValues() + "\xFF\r\n\r";
  near.port.Output(bytes);
  EXPECT_TRUE(world.Until([&] { return sent.size() >= bytes.size(); }));
  EXPECT_EQ(sent, bytes);
  wire->Send(bytes);
  EXPECT_TRUE(world.Until([&] { return near.bytes.size() >= bytes.size(); }));
  EXPECT_EQ(near.bytes, bytes);
}

TEST_F(Ser2net, BreakAndOutputsAndPurgeLeaveTheDataWhole) {
  ASSERT_EQ(FaultOfOpening(near.port), "");
  near.port.SetDTREnable(true);
  near.port.SetRTSEnable(true);
  near.port.SetBreak(true);
  near.port.SetBreak(false);
  near.port.ClearInBuffer();
  world.RunFor(100 * kMillisecond);
  near.port.Output("after the break\r");
  EXPECT_TRUE(world.Until([&] { return sent == "after the break\r"; })) << sent;
  EXPECT_FALSE(near.port.Gone());
  EXPECT_EQ(near.port.EdgeCount(), 0);
}

TEST_F(Ser2net, OpensAgainRightAfterClosing) {
  for (int round = 0; round < 3; ++round) {
    ASSERT_EQ(FaultOfOpening(near.port), "") << round;
    near.port.Close();
  }
}

TEST_F(Ser2net, ServerThatEndsIsToldOnceAndExistsNoMore) {
  ASSERT_EQ(FaultOfOpening(near.port), "");
  server.process.terminate();
  EXPECT_TRUE(world.Until([&] { return near.port.Gone(); }));
  EXPECT_EQ(near.heard, std::vector<int>{kCommPortGone});
  EXPECT_FALSE(ThePorts().Exists(5));
}

}  // namespace
}  // namespace penlog
