// The real platform as a main program sets it up: local and network ports by one list.
#include "platform/qt/real_machine.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include "platform/posix/pty_wire.h"
#include "platform/qt/rfc2217_server.h"
#include "platform/serial_port.h"
#include "platform/telnet_com_port.h"
#include "platform/view.h"
#include "platform/yield.h"

namespace penlog {
namespace {

struct MachineTest : testing::Test {
  MachineTest() { ResetYield(); }
  ~MachineTest() override { ResetYield(); }

  void List(const std::string& text) const {
    QFile file(folder.filePath("Serial Ports.txt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.c_str());
  }
  RealMachineSetup HereSetup() {
    RealMachineSetup setup;
    setup.port_list = [this] { return folder.filePath("Serial Ports.txt").toStdString(); };
    setup.report = [this](const std::string& text) { reports += text + "\n"; };
    return setup;
  }
  static bool Until(const std::function<bool()>& done) {
    const Micros end = Now() + 2 * kSecond;
    while (!done() && Now() < end) WaitYield("a test's condition");
    return done();
  }

  QTemporaryDir folder;
  std::string reports;
};

TEST_F(MachineTest, LocalAndNetworkPortsStandInOneList) {
  RealMachine machine(HereSetup());
  PtyWire cone(machine.clock().io(), folder.filePath("cone").toStdString());
  Rfc2217Server truck(machine.clock());
  List("# the simulated rig\n3 " + cone.Link() +
       "\n4 rfc2217://localhost:" + std::to_string(truck.Port()) + "\n5 rfc2217://127.0.0.1:9\n");
  EXPECT_TRUE(EnumSerPorts(3));
  EXPECT_TRUE(EnumSerPorts(4));
  EXPECT_FALSE(EnumSerPorts(5));
  EXPECT_FALSE(EnumSerPorts(6));
  QElapsedTimer since;
  since.start();
  for (int number = 1; number <= 255; ++number) EnumSerPorts(number);
  EXPECT_LT(since.nsecsElapsed(), 5'000'000);
  EXPECT_EQ(reports, "");

  std::string cone_heard;
  cone.OnBytes = [&](std::string_view bytes) { cone_heard += bytes; };
  SerialPort to_cone("cone");
  to_cone.SetCommPort(3);
  to_cone.Open();
  SerialPort to_truck("truck");
  to_truck.SetCommPort(4);
  to_truck.Open();
  to_cone.Output("Z\r");
  truck.SetLines({true, false, false});
  EXPECT_TRUE(Until([&] { return cone_heard == "Z\r" && to_truck.CTSHolding(); }));
}

TEST_F(MachineTest, EndOfTheMachineDropsTheOutputsOfOpenPorts) {
  QTcpServer listener;
  ASSERT_TRUE(listener.listen(QHostAddress::LocalHost));
  const std::string greeting =
      TelnetNegotiation(kTelnetDo, kTelnetComPort) + ComPortMessage(101, BaudValue(9600)) +
      ComPortMessage(102, std::uint8_t{8}) + ComPortMessage(103, std::uint8_t{1}) +
      ComPortMessage(104, std::uint8_t{1});
  QTcpSocket* server = nullptr;  // of the newest connection: the first is a trial
  QObject::connect(&listener, &QTcpServer::newConnection, &listener, [&] {
    server = listener.nextPendingConnection();
    server->write(greeting.data(), static_cast<qint64>(greeting.size()));
  });
  List("4 rfc2217://127.0.0.1:" + std::to_string(listener.serverPort()) + "\n");
  SerialPort port("truck");
  {
    RealMachine machine(HereSetup());
    port.SetCommPort(4);
    port.Open();
    port.SetRTSEnable(true);
    server->readAll();
  }
  EXPECT_FALSE(port.PortOpen());
  ASSERT_NE(server, nullptr);
  while (server->waitForReadyRead(50)) {
  }
  const std::string last = server->readAll().toStdString();
  const std::string lowered = ComPortMessage(kComSetControl, kControlDtrOff) +
                              ComPortMessage(kComSetControl, kControlRtsOff);
  EXPECT_TRUE(last.ends_with(lowered));
  EXPECT_EQ(server->state(), QAbstractSocket::UnconnectedState);
}

struct CountingView : View {
  void Frame() override { ++frames; }
  bool Shot(const std::string&, const std::string&, int, int) override { return false; }
  bool Act(const OperatorAction&, std::string&) override { return false; }
  bool PressBoxButton(BoxAnswer, std::string&) override { return false; }
  int frames = 0;
};

TEST_F(MachineTest, ViewFollowsWhatHappens) {
  RealMachine machine(HereSetup());
  CountingView view;
  UseView(&view);
  PostCall(Now() + 50 * kMillisecond, this, [] {});
  EXPECT_TRUE(Until([&] { return view.frames >= 2; }));
  UseView(nullptr);
}

}  // namespace
}  // namespace penlog
