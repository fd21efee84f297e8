#include "adapters/windows/ui/CommonControls.h"

#include <commctrl.h>

#include <array>

namespace kartix::adapters::native {

HINSTANCE ownModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&ownModule), &module);
  return module;
}

CommonControls::CommonControls() {
  std::array<wchar_t, MAX_PATH> file{};
  GetModuleFileNameW(ownModule(), file.data(), static_cast<DWORD>(file.size()));
  ACTCTXW wanted{};
  wanted.cbSize = sizeof wanted;
  wanted.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  wanted.lpSource = file.data();
  wanted.lpResourceName = ISOLATIONAWARE_MANIFEST_RESOURCE_ID;
  wanted.hModule = ownModule();
  context_ = CreateActCtxW(&wanted);
  // Looked for with the manifest in force, so that the version is the one it asks for.
  const InForce scope(*this);
  library_ = LoadLibraryW(L"comctl32.dll");
  const INITCOMMONCONTROLSEX classes{
      sizeof classes, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
  if (const auto init = function<decltype(&InitCommonControlsEx)>("InitCommonControlsEx")) init(&classes);
}

/// The height of a row is that of its image, were there any. Image lists must come from the same version.
void CommonControls::setRowHeight(HWND list, int height) const {
  const auto create = function<decltype(&ImageList_Create)>("ImageList_Create");
  const auto destroy = function<decltype(&ImageList_Destroy)>("ImageList_Destroy");
  if (!create || !destroy) return;
  const auto before = reinterpret_cast<HIMAGELIST>(SendMessageW(
      list, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(create(1, height, ILC_COLOR, 1, 1))));
  if (before) destroy(before);
}

CommonControls::~CommonControls() {
  if (library_) FreeLibrary(library_);
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

CommonControls::InForce::InForce(const CommonControls& controls)
    : active_(controls.context_ != INVALID_HANDLE_VALUE && ActivateActCtx(controls.context_, &cookie_) != 0) {}

CommonControls::InForce::~InForce() {
  if (active_) DeactivateActCtx(0, cookie_);
}

}  // namespace kartix::adapters::native
