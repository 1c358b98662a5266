#include "Host/Lineup/Send/Output/UdpOutput.h"

#include <lineup/Error.h>
#include <lineup/UsageError.h>

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <string_view>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::array<std::string_view, 4> kUdpOptions = {"ttl", "localaddr", "localport", "mtu"};
constexpr int kHighestTtl = 255;

struct FreeAddresses {
    void operator()(addrinfo* addresses) const noexcept { freeaddrinfo(addresses); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

Addresses FindAddresses(const char* host, const std::string& port, int family) {
    addrinfo hints{};
    hints.ai_family = family;
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = host == nullptr ? AI_PASSIVE : 0;
    addrinfo* found = nullptr;
    if (const int code = getaddrinfo(host, port.c_str(), &hints, &found); code != 0) {
        throw Error(
            fmt::format("cannot find {} port {}: {}", host == nullptr ? "here" : host, port, gai_strerror(code)));
    }
    return Addresses(found);
}

std::string SystemText(int error) {
    return std::generic_category().message(error);
}

std::string OptionOf(const StreamUrl& url, std::string_view name) {
    const auto found = url.options.find(name);
    return found == url.options.end() ? std::string() : found->second;
}

void CheckUdpOptions(const StreamUrl& url) {
    for (const auto& [name, value] : url.options) {
        if (std::find(kUdpOptions.begin(), kUdpOptions.end(), name) == kUdpOptions.end()) {
            throw UsageError("output", fmt::format("{}={}", name, value),
                             "behind the ? there can be ttl, localaddr, localport and mtu");
        }
    }
}

void SetTtl(int socket, int family, const std::string& text) {
    int ttl = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), ttl);
    if (error != std::errc() || *stop != '\0' || ttl < 0 || ttl > kHighestTtl) {
        throw UsageError("output", "ttl=" + text, "must be a number of routers, 0 to 255");
    }
    const bool six = family == AF_INET6;
    const int level = six ? IPPROTO_IPV6 : IPPROTO_IP;
    for (const int option : {six ? IPV6_MULTICAST_HOPS : IP_MULTICAST_TTL, six ? IPV6_UNICAST_HOPS : IP_TTL}) {
        // A unicast datagram needs one router's time to live at least.
        const int value = option == IP_TTL && ttl == 0 ? 1 : ttl;
        if (setsockopt(socket, level, option, &value, sizeof(value)) != 0) {
            throw Error(fmt::format("cannot set ttl={}: {}", text, SystemText(errno)));
        }
    }
}

// Multicast leaves by the interface that has the local address.
void SetInterface(int socket, const addrinfo& local) {
    if (local.ai_family == AF_INET) {
        const auto* const address = reinterpret_cast<const sockaddr_in*>(local.ai_addr);
        setsockopt(socket, IPPROTO_IP, IP_MULTICAST_IF, &address->sin_addr, sizeof(address->sin_addr));
    }
}

}  // namespace

UdpOutput::UdpOutput(const StreamUrl& url, std::function<void(const std::string&)> notice)
    : mName(fmt::format("{}:{}", url.host, url.port)), mNotice(std::move(notice)) {
    CheckUdpOptions(url);
    const Addresses to = FindAddresses(url.host.c_str(), url.port, AF_UNSPEC);
    mSocket = socket(to->ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (mSocket < 0) {
        throw Error(fmt::format("cannot send to {}: {}", mName, SystemText(errno)));
    }
    try {
        const std::string localAddress = OptionOf(url, "localaddr");
        const std::string localPort = OptionOf(url, "localport");
        if (!localAddress.empty() || !localPort.empty()) {
            const Addresses local = FindAddresses(localAddress.empty() ? nullptr : localAddress.c_str(),
                                                  localPort.empty() ? "0" : localPort, to->ai_family);
            if (bind(mSocket, local->ai_addr, local->ai_addrlen) != 0) {
                throw Error(fmt::format("cannot send from {} port {}: {}", localAddress.empty() ? "any" : localAddress,
                                        localPort.empty() ? "any" : localPort, SystemText(errno)));
            }
            SetInterface(mSocket, *local);
        }
        if (const std::string ttl = OptionOf(url, "ttl"); !ttl.empty()) {
            SetTtl(mSocket, to->ai_family, ttl);
        }
        if (connect(mSocket, to->ai_addr, to->ai_addrlen) != 0) {
            throw Error(fmt::format("cannot send to {}: {}", mName, SystemText(errno)));
        }
    } catch (...) {
        close(mSocket);
        throw;
    }
}

UdpOutput::~UdpOutput() {
    close(mSocket);
}

void UdpOutput::Say(const std::string& text) const {
    if (mNotice) {
        mNotice(text);
    }
}

bool UdpOutput::Write(std::span<const std::uint8_t> bytes, const StreamMoment& /*moment*/) {
    ssize_t sent = send(mSocket, bytes.data(), bytes.size(), 0);
    // What comes back is about the datagram before: this one has not been tried.
    const bool refused = sent < 0 && errno == ECONNREFUSED;
    if (refused) {
        sent = send(mSocket, bytes.data(), bytes.size(), 0);
    }
    const int error = sent < 0 || refused ? (refused ? ECONNREFUSED : errno) : 0;
    if (error == ECONNREFUSED && mError != error) {
        Say(fmt::format("nobody receives at {}; sending goes on", mName));
    } else if (error != 0 && error != mError) {
        Say(fmt::format("cannot send to {}: {}; trying on", mName, SystemText(error)));
    }
    // Each refusal answers one datagram, and the next is silent again: an end of them cannot be told.
    mError = error != 0 || mError == ECONNREFUSED ? (error != 0 ? error : mError) : 0;
    return sent == static_cast<ssize_t>(bytes.size());
}

}  // namespace parts
}  // namespace lineup
