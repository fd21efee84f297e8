#pragma once

namespace kartix::platform {
class AutomationObject;
class XmlDocument;
}  // namespace kartix::platform

namespace kartix {

class Session;

/// Copies the register record of an answer into the session's `ResultCard`. What the record does not hold becomes
/// empty; dates stay in the form in which the register gives them.
void TakeOverBestandsdaten(Session& session, const platform::XmlDocument& answer);

/// The same from an inquiry object that has found one record. What the object cannot tell becomes empty.
void TakeOverBestandsdatenCOM(Session& session, platform::AutomationObject& object);

}  // namespace kartix
