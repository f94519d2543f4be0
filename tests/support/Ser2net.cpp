#include "support/Ser2net.hpp"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "FlashSerial/NetworkPort.hpp"

namespace tarnwick::testing {

namespace fs = std::filesystem;

namespace {

int listenerOnFreePort(std::uint16_t& port) {
  const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(fd, 16) != 0 ||
      ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    if (fd >= 0) ::close(fd);
    throw std::runtime_error("no free TCP port on 127.0.0.1");
  }
  port = ntohs(address.sin_port);
  return fd;
}

// Whether something listens on 127.0.0.1:`port`, read from the kernel's table rather than by
// connecting, which ser2net would take for a client.
bool listening(std::uint16_t port) {
  std::ifstream table("/proc/net/tcp");
  char loopback[16], every[16];
  std::snprintf(loopback, sizeof loopback, "0100007F:%04X", port);
  std::snprintf(every, sizeof every, "00000000:%04X", port);
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    std::string slot, local, remote, state;
    fields >> slot >> local >> remote >> state;
    if ((local == loopback || local == every) && state == "0A") return true;
  }
  return false;
}

std::string fileText(const fs::path& path) {
  std::ifstream in(path);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

} // namespace

std::uint16_t freeTCPPort() {
  std::uint16_t port = 0;
  ::close(listenerOnFreePort(port));
  return port;
}

Ser2net::Ser2net(const std::string& device, Options options) {
  std::string folder = (fs::temp_directory_path() / "tarnwick-ser2net-XXXXXX").string();
  if (!::mkdtemp(folder.data())) throw std::runtime_error("cannot make a folder for ser2net");
  folder_ = folder;
  // Another test may take the port between asking and listening; a fresh one then does.
  for (int attempt = 0; attempt < 3; ++attempt) {
    if (start(device, options)) return;
    stop();
  }
  const std::string log = fileText(folder_ / "ser2net.log");
  fs::remove_all(folder_);
  throw std::runtime_error("ser2net did not start listening:\n" + log);
}

Ser2net::~Ser2net() {
  stop();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

std::string Ser2net::portName() const { return NetworkPortAddress{"127.0.0.1", port_}.name(); }

bool Ser2net::start(const std::string& device, const Options& options) {
  port_ = freeTCPPort();
  const fs::path config = folder_ / "ser2net.yaml";
  {
    std::ofstream out(config);
    const std::string stack = options.protocol.empty() ? "" : options.protocol + ",";
    const bool announced = !options.announceAs.empty();
    out << "connection: &board\n"
        << "  accepter: " << stack << "tcp," << (announced ? "0.0.0.0" : "127.0.0.1") << ","
        << port_ << "\n"
        << "  connector: serialdev," << device << ",115200n81,local\n"
        << "  options:\n"
        << "    chardelay: " << (options.chardelay ? "true" : "false") << "\n";
    if (announced)
      out << "    mdns: true\n"
          << "    mdns-sysattrs: true\n"
          << "    mdns-name: \"" << options.announceAs << "\"\n";
  }
  // Everything the child needs is made before fork: after it, only exec and its preparation.
  const std::string configText = config.string();
  const std::string pidFile = (folder_ / "ser2net.pid").string();
  const std::string logFile = (folder_ / "ser2net.log").string();
  std::vector<const char*> argv = {"ser2net",       "-n",   "-u", "-c", configText.c_str(), "-P",
                                   pidFile.c_str(), nullptr};
  const pid_t parent = ::getpid();
  pid_ = ::fork();
  if (pid_ < 0) throw std::runtime_error("fork failed");
  if (pid_ == 0) {
    // ser2net goes with the test, whatever way the test ends.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(127);
    const int log = ::open(logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (log >= 0) {
      ::dup2(log, STDOUT_FILENO);
      ::dup2(log, STDERR_FILENO);
    }
    ::execv(TARNWICK_SER2NET, const_cast<char* const*>(argv.data()));
    ::_exit(127);
  }
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (std::chrono::steady_clock::now() < deadline) {
    if (listening(port_)) return true;
    int status = 0;
    if (::waitpid(pid_, &status, WNOHANG) == pid_) {
      pid_ = -1;
      return false;
    }
    // Nothing announces that ser2net listens; its socket table entry is looked for often.
    ::poll(nullptr, 0, 10);
  }
  return false;
}

void Ser2net::stop() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGTERM);
  int status = 0;
  for (int round = 0; round < 200; ++round) {
    if (::waitpid(pid_, &status, WNOHANG) == pid_) {
      pid_ = -1;
      return;
    }
    ::poll(nullptr, 0, 10);
  }
  ::kill(pid_, SIGKILL);
  ::waitpid(pid_, &status, 0);
  pid_ = -1;
}

PlainServer::PlainServer(std::string greeting, bool hangUp) {
  listener_ = listenerOnFreePort(port_);
  thread_ = std::thread([this, greeting, hangUp] {
    std::vector<int> clients;
    while (!stop_) {
      pollfd wait{listener_, POLLIN, 0};
      if (::poll(&wait, 1, 20) <= 0) continue;
      const int client = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (client < 0) continue;
      if (!greeting.empty()) (void)!::send(client, greeting.data(), greeting.size(), MSG_NOSIGNAL);
      if (hangUp)
        ::close(client);
      else
        clients.push_back(client);
      ++accepted_;
    }
    for (int client : clients)
      ::close(client);
  });
}

PlainServer::~PlainServer() {
  stop_ = true;
  thread_.join();
  ::close(listener_);
}

std::string PlainServer::portName() const { return NetworkPortAddress{"127.0.0.1", port_}.name(); }

} // namespace tarnwick::testing
