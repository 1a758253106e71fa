// SPDX-License-Identifier: MIT
#include "platform/freedesktop/routing_table.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "base/unique_fd.h"

namespace quillo {
namespace {

constexpr std::size_t kReplyBytes = 32UL * 1024;
constexpr timeval kPatience{1, 0};

struct Question {
    nlmsghdr header;
    rtmsg route;
};

bool askForAllRoutes(int socket) {
    Question question{};
    question.header.nlmsg_len = sizeof(question);
    question.header.nlmsg_type = RTM_GETROUTE;
    question.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    question.route.rtm_family = AF_UNSPEC;
    return send(socket, &question, sizeof(question), 0) == ssize_t(sizeof(question));
}

// A route that nothing but an interface leads along: unicast, to everywhere, not known to be dead.
bool isWayOut(std::span<const std::byte> message) {
    rtmsg route{};
    if (message.size() < sizeof(nlmsghdr) + sizeof(route)) {
        return false;
    }
    std::memcpy(&route, message.data() + NLMSG_HDRLEN, sizeof(route));
    return route.rtm_type == RTN_UNICAST && route.rtm_dst_len == 0 &&
           (route.rtm_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) == 0;
}

enum class Answer { GoesOn, Ended, Found };

// One datagram of the kernel's: several messages one after another.
Answer readDatagram(std::span<const std::byte> bytes) {
    while (bytes.size() >= sizeof(nlmsghdr)) {
        nlmsghdr header{};
        std::memcpy(&header, bytes.data(), sizeof(header));
        if (header.nlmsg_len < sizeof(header) || header.nlmsg_len > bytes.size() ||
            header.nlmsg_type == NLMSG_DONE || header.nlmsg_type == NLMSG_ERROR) {
            return Answer::Ended;
        }
        if (header.nlmsg_type == RTM_NEWROUTE && isWayOut(bytes.first(header.nlmsg_len))) {
            return Answer::Found;
        }
        bytes = bytes.subspan(std::min<std::size_t>(NLMSG_ALIGN(header.nlmsg_len), bytes.size()));
    }
    return Answer::GoesOn;
}

}  // namespace

bool hasDefaultRoute() {
    const UniqueFd socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
    if (!socket.isValid() ||
        setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof(kPatience)) != 0 ||
        !askForAllRoutes(socket.get())) {
        return false;
    }
    std::array<std::byte, kReplyBytes> buffer{};
    Answer answer = Answer::GoesOn;
    while (answer == Answer::GoesOn) {
        const ssize_t size = recv(socket.get(), buffer.data(), buffer.size(), 0);
        answer = size <= 0 ? Answer::Ended
                           : readDatagram(std::span(buffer).first(static_cast<std::size_t>(size)));
    }
    return answer == Answer::Found;
}

}  // namespace quillo
