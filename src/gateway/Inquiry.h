#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "gateway/Setters.h"

namespace kartix::platform {
class AutomationObject;
class XmlDocument;
}  // namespace kartix::platform

namespace kartix {

class KBAInterface;
class Login;
class Runtime;
class Session;

/// Class of the host's automation object that inquires in the register.
inline constexpr std::string_view inquiryClass = "TSW.Schnittstellen.KBA.ZKR.ARGO2006Anfrage";

/// What the register is asked for. The first of `kgknr` and `fsnfk` that is not empty is asked for alone.
struct InquiryCriteria {
  std::string kgknr;  ///< card number
  std::string fsnfk;  ///< driving licence number
  std::string vname;  ///< first names
  std::string gnamb;  ///< name parts before the birth name
  std::string gname;  ///< birth name
  std::string fnamb;  ///< name parts before the family name
  std::string name;   ///< family name
  std::string dgebu;  ///< date of birth, sent as it stands
  std::string gort;   ///< place of birth
};

/// One hit of an inquiry that has several.
struct Hit {
  std::string card;
  std::string expiry;  ///< "dd.mm.yyyy"
  std::string licence;
  std::string name;  ///< family name with the name parts before it
  std::string firstNames;
  std::string postcode;
  std::string place;
};

using Hits = std::vector<Hit>;

/// The window that an inquiry was started from.
class InquiryWindow {
 public:
  virtual ~InquiryWindow() = default;
  /// Moves the progress bar to `value` (percent), step by step when `smooth`; an empty text leaves the status.
  virtual void setProgress(std::int16_t value, const std::string& text, bool smooth) = 0;
  /// Lets the clerk choose a hit: its card number, or nothing when the clerk cancelled.
  virtual std::optional<std::string> chooseHit(const Hits& hits) = 0;
};

/// Inquiry in the register. True when a record has been taken over into the session's `ResultCard`; otherwise the
/// clerk has been told why, a cancelled selection excepted.
class ZKRAnfrage {
 public:
  ZKRAnfrage(Runtime& runtime, Session& session, KBAInterface& kba, Login& login, InquiryWindow& window)
      : runtime_(runtime), session_(session), kba_(kba), login_(login), window_(window) {}

  /// Over the component's own transport: at most three requests, and at most one login.
  bool ZKRAnfrageHTTP(const InquiryCriteria& criteria);
  /// Over the host's automation object.
  bool ZKRAnfrageCOM(const InquiryCriteria& criteria);

 private:
  std::int32_t EvaluateZKRAntwort(const platform::XmlDocument& answer, std::string& selectedCardNumber);
  std::int32_t evaluateList(const platform::XmlDocument& answer, std::string& selectedCardNumber);
  std::int32_t evaluateRecord(const platform::XmlDocument& answer);
  bool requestSingleRecord(const std::string& kartennummer);
  bool notUnique();
  bool inquire(const InquiryCriteria& criteria);
  bool singleRecordCOM(const std::string& kartennummer);
  bool refusedCOM(platform::AutomationObject& object);

  Runtime& runtime_;
  Session& session_;
  KBAInterface& kba_;
  Login& login_;
  InquiryWindow& window_;
};

/// Makes `document` the inquiry for `criteria`. False when it could not be built.
bool BuildZKRAnfrage(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                     const InquiryCriteria& criteria);

/// The members of an inquiry object that take the criteria.
Setters<InquiryCriteria> inquirySetters();

/// The hits of a list answer, in its order.
Hits FillTrefferliste(Runtime& runtime, const platform::XmlDocument& answer);
/// The hits that an inquiry object holds.
Hits FillTrefferlisteCOM(Runtime& runtime, platform::AutomationObject& object);

}  // namespace kartix
