// Channels that one client has to itself.
#pragma once

namespace simulator {

class Audience;
struct ServerState;
struct Session;

// Gives back the channels that a client has stolen.
void return_channels(ServerState& state, const Session& session, Audience& audience);

} // namespace simulator
