// The user dictionary, where clients leave texts for each other.
#pragma once

namespace simulator {

class Audience;
struct ServerState;
struct Session;

// Gives the keys that a client owned the values it left for them.
void leave_legacy(ServerState& state, Session& session, Audience& audience);

} // namespace simulator
