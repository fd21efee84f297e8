#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/ObjectClasses.h"
#include "platform/SoundPlayer.h"
#include "platform/UserInterface.h"

namespace kartix::platform {
class Stage;
}

namespace kartix::adapters {

class Script;
class Transcript;

/// How a play is shown on a stage.
struct PlayOptions {
  /// Waited before each step, so that a person can follow.
  std::chrono::milliseconds pause{0};
  /// Path of the PNG (UTF-8) to write of a window that waits for the clerk; empty for none.
  std::function<std::string(const forms::Form&)> picture;
};

/// Names a picture for the first wait of each window: `dir/01-StartForm.png`, `dir/02-Auswahl.png`, ...
std::function<std::string(const forms::Form&)> picturesIn(std::filesystem::path dir);

/// A clerk that plays `script` and writes what happens to `transcript` (when there is one). A window that does not
/// fit the script fails it; once the steps are used up, or have failed, every window is closed through its close
/// box. A window that stays open all the same is taken away in the end, so that a play always comes to its end. What
/// the arguments refer to outlives the clerk.
std::unique_ptr<platform::UserInterface> makeScriptUserInterface(Script& script, Transcript* transcript,
                                                                 platform::Stage* stage = nullptr,
                                                                 PlayOptions options = {});

/// Once the play is over: what did not fit, if anything. Steps that were left over are told to the transcript too.
std::optional<std::string> endPlay(const Script& script, Transcript* transcript);

/// Writes the windows that `front` shows to a person to the transcript, without what the person does there.
std::unique_ptr<platform::UserInterface> makeRecordingUserInterface(platform::UserInterface& front,
                                                                    Transcript& transcript);

/// Writes sounds to the transcript and hands them on to `player` when there is one.
std::unique_ptr<platform::SoundPlayer> makeTranscriptSounds(Transcript& transcript,
                                                            platform::SoundPlayer* player = nullptr);

/// Hands every call on to the objects of `classes` and writes it to the transcript.
std::unique_ptr<platform::ObjectClasses> makeRecordingObjects(platform::ObjectClasses& classes,
                                                              Transcript& transcript);

/// Stand-ins for the host's objects, answering as `json` says: `{"CLASS": {"MEMBER": answer}}`. An answer is a value,
/// a list of answers for successive calls (the last one repeats) or an object that maps the first argument to a
/// value. An unlisted member that begins with "Set" is accepted, any other fails; a class that is null or unlisted
/// cannot be created. Successive calls are counted per class. Raises `BadInput`.
std::unique_ptr<platform::ObjectClasses> makeScriptedObjects(std::string_view json);
/// The same from a file of at most 16 MiB.
std::unique_ptr<platform::ObjectClasses> loadScriptedObjects(const std::filesystem::path& file);

}  // namespace kartix::adapters
