#include "tools/demoservice/faults/misbehaviour.h"

#include "tools/demoservice/knowledge/answers.h"

#include <algorithm>
#include <string>
#include <utility>

namespace demo {

const char *const jsonType = "application/json;charset=UTF-8";

namespace {

using httplib::DataSink;
using httplib::Response;
using nlohmann::json;

constexpr int statusOk = 200;

/// A good reply cut in two inside a text that a client reads.
struct SplitReply
{
    std::string before;
    std::string after;
};

SplitReply splitReply(Call call, json result)
{
    static const std::string mark = "<#cut#>";
    if (call == Call::Ask) {
        result["reply"] = "<p>" + mark + "</p>" + result.at("reply").get<std::string>();
    } else {
        result.push_back({{"id", 0}, {"question", mark}});
    }
    const std::string whole = goodReply(result);
    const std::size_t at = whole.find(mark);
    return {whole.substr(0, at), whole.substr(at + mark.size())};
}

json withoutContent(Call call, json result)
{
    if (call != Call::Ask) {
        return json::array();
    }
    result["reply"] = "";
    return result;
}

/// One piece of the text that goes on without end, from its place `offset`.
std::string fillerAt(std::size_t offset, std::size_t length)
{
    static const std::string pattern = "miravel demo service filler text ";
    constexpr std::size_t largestPiece = 65536;
    std::string piece;
    piece.reserve(std::min(length, largestPiece) + pattern.size());
    piece = pattern.substr(offset % pattern.size());
    while (piece.size() < std::min(length, largestPiece)) {
        piece += pattern;
    }
    piece.resize(std::min(length, largestPiece));
    return piece;
}

/// Sends `before`, `fill` bytes of filler and `after` without ever holding them all in memory.
void sendFilled(Response &response, SplitReply reply, std::size_t fill)
{
    const std::size_t total = reply.before.size() + fill + reply.after.size();
    response.set_content_provider(
        total, jsonType,
        [reply = std::move(reply), fill](std::size_t offset, std::size_t, DataSink &sink) {
            const std::size_t head = reply.before.size();
            if (offset < head) {
                return sink.write(reply.before.data() + offset, head - offset);
            }
            if (offset < head + fill) {
                const std::string piece = fillerAt(offset - head, head + fill - offset);
                return sink.write(piece.data(), piece.size());
            }
            const std::size_t done = offset - head - fill;
            return sink.write(reply.after.data() + done, reply.after.size() - done);
        });
}

/// Promises the whole of `reply`, sends the first half and closes the connection.
void sendTruncated(Response &response, const std::string &reply)
{
    const std::size_t half = reply.size() / 2;
    response.set_content_provider(
        reply.size(), jsonType, [reply, half](std::size_t offset, std::size_t, DataSink &sink) {
            return offset < half && sink.write(reply.data() + offset, half - offset);
        });
}

/// Promises no length, sends half of `reply` as chunks and closes without the last chunk.
void sendDropped(Response &response, const std::string &reply)
{
    const std::size_t half = reply.size() / 2;
    response.set_chunked_content_provider(
        jsonType, [reply, half](std::size_t offset, DataSink &sink) {
            return offset < half && sink.write(reply.data() + offset, half - offset);
        });
}

void sendTrickling(Response &response, const std::string &reply, std::int64_t ms,
                   const PeerSocket &peer)
{
    response.set_content_provider(
        reply.size(), jsonType, [reply, ms, peer](std::size_t offset, std::size_t, DataSink &sink) {
            return peer.wait(ms) && sink.write(reply.data() + offset, 1);
        });
}

void sendHttpError(Response &response, std::int64_t status)
{
    response.status = static_cast<int>(status);
    response.set_content("<html><body><h1>" + std::to_string(status) + "</h1></body></html>",
                         "text/html");
}

std::string deepReply(std::int64_t levels)
{
    const auto depth = static_cast<std::size_t>(levels);
    return R"({"errorCode":"0","errorMsg":"ok","result":)" + std::string(depth, '[')
         + std::string(depth, ']') + "}";
}

std::string nulReply(Call call, const json &result, const std::string &where)
{
    if (where == "end") {
        return goodReply(result) + std::string(1, '\0') + "{rubbish";
    }
    const SplitReply reply = splitReply(call, result);
    return reply.before + std::string(1, '\0') + reply.after;
}

std::string notUtf8Reply(Call call, const json &result)
{
    const SplitReply reply = splitReply(call, result);
    return reply.before + "\xFF\xFE\xC0 \xE4\xBD" + reply.after;
}

std::string brokenReply(const json &result)
{
    const std::string reply = goodReply(result);
    return reply.substr(0, reply.size() - reply.size() / 3);
}

void sendText(Response &response, const std::string &reply)
{
    response.set_content(reply, jsonType);
}

} // namespace

void answer(Response &response, Call call, const json &result, const Fault &fault,
            const PeerSocket &peer)
{
    response.status = statusOk;
    switch (fault.kind) {
    case FaultKind::None:
        return sendText(response, goodReply(result));
    case FaultKind::Delay:
        peer.wait(fault.number);
        return sendText(response, goodReply(result));
    case FaultKind::Error:
        return sendText(response, refusingReply(fault.text, "this error was asked for"));
    case FaultKind::Http:
        return sendHttpError(response, fault.number);
    case FaultKind::Empty:
        return sendText(response, {});
    case FaultKind::EmptyReply:
        return sendText(response, goodReply(withoutContent(call, result)));
    case FaultKind::BrokenJson:
        return sendText(response, brokenReply(result));
    case FaultKind::Truncate:
        return sendTruncated(response, goodReply(result));
    case FaultKind::Drop:
        return sendDropped(response, goodReply(result));
    case FaultKind::Huge:
        return sendFilled(response, splitReply(call, result),
                          static_cast<std::size_t>(fault.number));
    case FaultKind::HugeJunk:
        return sendFilled(response, {}, static_cast<std::size_t>(fault.number));
    case FaultKind::NotUtf8:
        return sendText(response, notUtf8Reply(call, result));
    case FaultKind::Nul:
        return sendText(response, nulReply(call, result, fault.text));
    case FaultKind::Deep:
        return sendText(response, deepReply(fault.number));
    case FaultKind::NoAnswer:
        return peer.waitForEnd();
    case FaultKind::Trickle:
        return sendTrickling(response, goodReply(result), fault.number, peer);
    }
}

int statusWith(const Fault &fault)
{
    return fault.kind == FaultKind::Http ? static_cast<int>(fault.number) : statusOk;
}

} // namespace demo
