/** The connected clients of the server: whole lines in, whole lines out, nothing ever blocks. */
#ifndef XAS_XMS_CLIENTS_H
#define XAS_XMS_CLIENTS_H

#include "xms/socket.h"

#include <functional>
#include <map>
#include <poll.h>
#include <string>
#include <string_view>
#include <vector>

struct XmsClient {
    XmsDescriptor socket;
    std::string input;
    std::string output;
    bool watches = false;
    bool gone = false;
};

/** By number, from 1; a number is not used again. */
struct XmsClients {
    std::map<int, XmsClient> all;
    int lastNumber = 0;
};

/** Takes in whoever waits at the listening socket. */
void xmsAcceptClients(XmsClients &clients, const XmsDescriptor &listener);

/** Adds what the server must wait for. */
void xmsAddToPoll(const XmsClients &clients, std::vector<pollfd> &waits);

/** Reads what has arrived and calls `handle` with each whole line and its client's number. */
void xmsReadClients(XmsClients &clients, const std::function<void(int, const std::string &)> &handle);

/** Queues a line for a client; nothing happens when it has gone. A client that reads nothing is let go. */
void xmsTell(XmsClients &clients, int number, std::string_view line);

/** Queues a line for all who watch. */
void xmsTellWatchers(XmsClients &clients, std::string_view line);

/** Writes out what the sockets take. */
void xmsFlushClients(XmsClients &clients);

/** Drops the clients that have gone and returns their numbers. */
std::vector<int> xmsDropGone(XmsClients &clients);

#endif
