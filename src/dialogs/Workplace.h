#pragma once

namespace kartix {

class ARGOInterface;
class KBAInterface;
class Login;
class Runtime;
class Session;

/// What every window of an operation works with.
struct Workplace {
  Runtime& runtime;
  Session& session;
  ARGOInterface& argo;
  KBAInterface& kba;
  Login& login;
};

}  // namespace kartix
