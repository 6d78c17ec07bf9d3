/* SPDX-License-Identifier: Apache-2.0 */
#include "delivery.h"

#include "listener.h"
#include "text.h"

#include <sys/socket.h>

#include <algorithm>
#include <memory>
#include <string>

namespace viewlib
{

namespace
{

constexpr std::size_t blockSize = 32768;

/* A body on its way out. */
struct Stream
{
    Listener& listener;
    const Answer answer;
    std::size_t end; /* where it is cut, or its size */
    bool begun = false;
};

ssize_t readStream(void* context, std::uint64_t position, char* buffer, std::size_t room)
{
    Stream& stream = *static_cast<Stream*>(context);
    const std::string& body = *stream.answer.body;
    if (!stream.begun)
    {
        stream.begun = true;
        if (!stream.listener.pause(stream.answer.delayBeforeBody))
        {
            return MHD_CONTENT_READER_END_WITH_ERROR;
        }
    }
    if (position >= stream.end)
    {
        return stream.end < body.size() ? MHD_CONTENT_READER_END_WITH_ERROR : MHD_CONTENT_READER_END_OF_STREAM;
    }
    std::size_t length = std::min(room, stream.end - static_cast<std::size_t>(position));
    const std::uint64_t rate = stream.answer.bytesPerSecond;
    if (rate != 0)
    {
        length = std::min(length, static_cast<std::size_t>(throttleStep(rate)));
        if (!stream.listener.pause(throttlePause(length, rate)))
        {
            return MHD_CONTENT_READER_END_WITH_ERROR;
        }
    }
    body.copy(buffer, length, static_cast<std::size_t>(position));
    return static_cast<ssize_t>(length);
}

void freeStream(void* context)
{
    delete static_cast<Stream*>(context);
}

MHD_Response* streamResponse(Listener& listener, const Answer& answer)
{
    const std::size_t size = answer.body->size();
    const std::size_t end = answer.cut == Cut::MidBody ? std::min(size, answer.cutAfter.value_or(size / 2)) : size;
    auto stream = std::make_unique<Stream>(Stream{listener, answer, end});
    const std::uint64_t declared = answer.framing == Framing::Length ? size : MHD_SIZE_UNKNOWN;
    MHD_Response* response =
        MHD_create_response_from_callback(declared, blockSize, readStream, stream.get(), freeStream);
    if (response != nullptr)
    {
        static_cast<void>(stream.release()); /* freeStream has it now */
        if (answer.framing == Framing::UntilClose)
        {
            MHD_set_response_options(response, MHD_RF_HTTP_1_0_COMPATIBLE_STRICT, MHD_RO_END);
        }
    }
    return response;
}

MHD_Response* bufferResponse(const Answer& answer)
{
    /* The library only reads from a buffer that it is told to copy. */
    void* bytes = const_cast<char*>(answer.body->data());
    return MHD_create_response_from_buffer(answer.body->size(), bytes, MHD_RESPMEM_MUST_COPY);
}

bool needsStream(const Answer& answer)
{
    return answer.delayBeforeBody.count() > 0 || answer.bytesPerSecond != 0 || answer.cut == Cut::MidBody ||
           answer.framing != Framing::Length;
}

/* Dissolving the association of a TCP socket makes the kernel send a reset. */
void resetConnection(MHD_Connection* connection)
{
    sockaddr none{};
    none.sa_family = AF_UNSPEC;
    (void)connect(socketOf(connection), &none, sizeof none);
}

} // namespace

int socketOf(MHD_Connection* connection)
{
    const MHD_ConnectionInfo* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
    return info == nullptr ? -1 : info->connect_fd;
}

void sendRaw(MHD_Connection* connection, const std::string& bytes)
{
    std::size_t sent = 0;
    while (sent < bytes.size())
    {
        const ssize_t step = send(socketOf(connection), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (step <= 0)
        {
            return;
        }
        sent += static_cast<std::size_t>(step);
    }
}

bool isSecure(MHD_Connection* connection)
{
    return MHD_get_connection_info(connection, MHD_CONNECTION_INFO_PROTOCOL) != nullptr;
}

MHD_Result deliver(Listener& listener, MHD_Connection* connection, const Answer& answer)
{
    if (!listener.pause(answer.delay))
    {
        return MHD_NO;
    }
    if (answer.continueFirst && !isSecure(connection))
    {
        sendRaw(connection, "HTTP/1.1 100 Continue\r\n\r\n");
    }
    if (answer.raw && !isSecure(connection))
    {
        sendRaw(connection, *answer.raw);
        return MHD_NO;
    }
    if (answer.cut == Cut::Reset)
    {
        resetConnection(connection);
    }
    if (answer.raw || answer.cut == Cut::BeforeStatus || answer.cut == Cut::Reset)
    {
        return MHD_NO;
    }
    MHD_Response* response = needsStream(answer) ? streamResponse(listener, answer) : bufferResponse(answer);
    if (response == nullptr)
    {
        return MHD_NO;
    }
    for (const Header& header : answer.headers)
    {
        MHD_add_response_header(response, header.name.c_str(), header.value.c_str());
    }
    const MHD_Result result = MHD_queue_response(connection, answer.status, response);
    MHD_destroy_response(response);
    return result;
}

} // namespace viewlib
