#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kartix/AutomationValue.h"
#include "kartix/Export.h"

namespace kartix {

/// An automation object of the host application, called by member name.
class KARTIX_EXPORT AutomationObject {
 public:
  virtual ~AutomationObject();
  /// Calls `member`. A failure is any exception derived from `std::exception`; the clerk is shown its text.
  virtual AutomationValue call(const std::string& member, const std::vector<AutomationValue>& arguments) = 0;
};

/// Offers the class `progId` to the component that this process shares, in place of one of the same name. The
/// component creates an object of it for each exchange. An empty `create` takes the class away again. What the
/// component calls on each class stands in docs/objects.md.
KARTIX_EXPORT void registerAutomationClass(const std::string& progId,
                                           std::function<std::unique_ptr<AutomationObject>()> create);

/// Lets the component's own objects perform inquiry, order, cancellation and notification with the gateway that the
/// settings name. They stand in for each class that the host has not registered: a class of the host's own goes
/// first, whether it is registered before or afterwards.
KARTIX_EXPORT void useGatewayObjects();

/// Path under which an image file of an order lies on this machine. `name` is what `SetPhotographFilename` and
/// `SetSignatureFilename` pass on: the form of the settings, with "\" between folders, and an extension whose case
/// need not be that of the file. Where there is no such file, the path at which it was expected.
KARTIX_EXPORT std::string imageFile(const std::string& name);

}  // namespace kartix
