#include <windows.h>
#include <gtest/gtest.h>
#include <oaidl.h>

#include <map>
#include <memory>
#include <string>

#include "automation/windows/Identifiers.h"
#include "automation/windows/Strings.h"
#include "component/Dispatch.h"

namespace kartix::automation {
namespace {

using dispatch::Direction;
using dispatch::Kind;
using dispatch::Type;

struct Release {
  void operator()(IUnknown* held) const { held->Release(); }
};
template <class T>
using Held = std::unique_ptr<T, Release>;

template <class T, class Get>
Held<T> gotten(Get get) {
  T* made = nullptr;
  EXPECT_EQ(get(&made), S_OK);
  return Held<T>(made);
}

std::string typeText(const TYPEDESC& type) {
  static const std::map<VARTYPE, std::string> names = {{VT_BSTR, "text"},    {VT_I2, "16"},    {VT_I4, "32"},
                                                       {VT_BOOL, "Boolean"}, {VT_HRESULT, ""}, {VT_VOID, ""}};
  return type.vt == VT_PTR ? typeText(*type.lptdesc) + "*" : names.at(type.vt);
}

std::string typeText(Type type) {
  switch (type) {
    case Type::boolean:
      return "Boolean";
    case Type::int16:
      return "16";
    case Type::int32:
      return "32";
    case Type::text:
      return "text";
    case Type::none:
      break;
  }
  return "";
}

/// "method 3 query(sSql text*, sCursor text*) 32": what the type library says of function `index`.
std::string described(ITypeInfo& info, UINT index) {
  FUNCDESC* function = nullptr;
  EXPECT_EQ(info.GetFuncDesc(index, &function), S_OK);
  std::array<BSTR, dispatch::mostArguments + 2> names{};
  UINT count = 0;
  info.GetNames(function->memid, names.data(), static_cast<UINT>(names.size()), &count);
  std::string text = function->invkind == INVOKE_FUNC          ? "method "
                     : function->invkind == INVOKE_PROPERTYGET ? "get "
                                                               : "let ";
  text += std::to_string(function->memid) + " " + fromBstr(names[0]) + "(";
  std::string result = typeText(function->elemdescFunc.tdesc);
  for (int i = 0; i < function->cParams; ++i) {
    const ELEMDESC& parameter = function->lprgelemdescParam[i];
    if ((parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
      result = typeText(*parameter.tdesc.lptdesc);
      continue;
    }
    const bool optional = (parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0;
    text += typeText(parameter.tdesc) + (optional ? "? " : " ");
  }
  for (UINT i = 0; i < count; ++i) SysFreeString(names.at(i));
  info.ReleaseFuncDesc(function);
  return text + ") " + result;
}

std::string described(const dispatch::Class& type, const dispatch::Member& member) {
  std::size_t first = 0;
  while (std::string_view(type.members[first].name) != member.name) ++first;
  std::string text = member.kind == Kind::method ? "method " : member.kind == Kind::get ? "get " : "let ";
  text += std::to_string(first + 1) + " " + member.name + "(";
  for (const dispatch::Argument& argument : member.arguments()) {
    text +=
        typeText(argument.type) + (argument.direction == Direction::in ? "" : "*") + (argument.optional ? "? " : " ");
  }
  return text + ") " + typeText(member.result);
}

TEST(TypeLibrary, SaysWhatTheTableOfTheClassesSays) {
  const std::wstring file(KARTIX_TYPES, KARTIX_TYPES + sizeof KARTIX_TYPES);
  const auto library = gotten<ITypeLib>([&](auto made) { return LoadTypeLibEx(file.c_str(), REGKIND_NONE, made); });
  ASSERT_TRUE(library);
  TLIBATTR* attributes = nullptr;
  library->GetLibAttr(&attributes);
  EXPECT_TRUE(attributes->guid == libraryId);
  library->ReleaseTLibAttr(attributes);
  const auto known = identities();
  ASSERT_EQ(known.size(), dispatch::classes().size());
  for (std::size_t i = 0; i < known.size(); ++i) {
    const dispatch::Class& type = dispatch::classes()[i];
    EXPECT_EQ(fromWide(known[i].name), type.name);
    const auto coclass =
        gotten<ITypeInfo>([&](auto made) { return library->GetTypeInfoOfGuid(known[i].classId, made); });
    ASSERT_TRUE(coclass) << type.name;
    const auto info =
        gotten<ITypeInfo>([&](auto made) { return library->GetTypeInfoOfGuid(known[i].interfaceId, made); });
    ASSERT_TRUE(info) << type.name;
    // The functions of its base are not counted among those of a dual interface.
    HREFTYPE other = 0;
    const auto dual = gotten<ITypeInfo>([&](auto made) {
      return info->GetRefTypeOfImplType(static_cast<UINT>(-1), &other) == S_OK ? info->GetRefTypeInfo(other, made)
                                                                               : E_FAIL;
    });
    ASSERT_TRUE(dual) << type.name;
    for (std::size_t slot = 0; slot < type.members.size(); ++slot) {
      EXPECT_EQ(described(*dual, static_cast<UINT>(slot)), described(type, type.members[slot])) << type.name;
    }
  }
}

}  // namespace
}  // namespace kartix::automation
