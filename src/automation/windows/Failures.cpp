#include "automation/windows/Failures.h"

#include <exception>
#include <new>

namespace kartix::automation {
namespace {

using dispatch::Refusal;

HRESULT codeOf(Refusal::Reason reason) {
  switch (reason) {
    case Refusal::Reason::unknownClass:
      return CLASS_E_CLASSNOTAVAILABLE;
    case Refusal::Reason::unknownMember:
      return DISP_E_MEMBERNOTFOUND;
    case Refusal::Reason::wrongCount:
      return DISP_E_BADPARAMCOUNT;
    case Refusal::Reason::wrongType:
      return DISP_E_TYPEMISMATCH;
    case Refusal::Reason::outOfRange:
      return DISP_E_OVERFLOW;
  }
  return E_FAIL;
}

/// A text that is not worth a second failure.
BSTR wordsOf(std::string_view text) noexcept {
  try {
    return text.empty() ? nullptr : toBstr(text);
  } catch (...) {
    return nullptr;
  }
}

}  // namespace

Failed currentFailure() noexcept {
  try {
    try {
      throw;
    } catch (const CallFailure& failure) {
      return {failure.code(), {}, failure.argument()};
    } catch (const Refusal& refusal) {
      return {codeOf(refusal.reason()), refusal.what(), CallFailure::noArgument};
    } catch (const std::bad_alloc&) {
      return {E_OUTOFMEMORY, {}, CallFailure::noArgument};
    } catch (const std::exception& error) {
      return {DISP_E_EXCEPTION, error.what(), CallFailure::noArgument};
    }
  } catch (...) {
    return {E_FAIL, {}, CallFailure::noArgument};
  }
}

HRESULT tell(const Failed& failed, const Identity& source, EXCEPINFO* failure) noexcept {
  if (failed.code != DISP_E_EXCEPTION || !failure) return failed.code;
  *failure = {};
  failure->scode = E_FAIL;
  failure->bstrSource = SysAllocString(source.name);
  failure->bstrDescription = wordsOf(failed.text);
  return DISP_E_EXCEPTION;
}

HRESULT tell(const Failed& failed, const Identity& source) noexcept {
  ICreateErrorInfo* made = nullptr;
  if (!failed.text.empty() && SUCCEEDED(CreateErrorInfo(&made))) {
    BSTR const words = wordsOf(failed.text);
    made->SetGUID(source.interfaceId);
    made->SetSource(const_cast<LPOLESTR>(source.name));
    made->SetDescription(words);
    SysFreeString(words);
    IErrorInfo* told = nullptr;
    if (SUCCEEDED(made->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&told)))) {
      SetErrorInfo(0, told);
      told->Release();
    }
    made->Release();
  }
  return failed.code == DISP_E_EXCEPTION ? E_FAIL : failed.code;
}

}  // namespace kartix::automation
