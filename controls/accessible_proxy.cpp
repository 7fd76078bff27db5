#include "controls/accessible_proxy.h"

CAccessibleProxy::CAccessibleProxy(HWND window)
{
    void* standard = nullptr;
    if (SUCCEEDED(::CreateStdAccessibleObject(window, OBJID_CLIENT, __uuidof(IAccessible), &standard))) {
        m_standard.Attach(static_cast<IAccessible*>(standard));
    }
}

void CAccessibleProxy::Disconnect()
{
    m_standard.Reset();
}

LRESULT CAccessibleProxy::Offer(WPARAM flags)
{
    return ::LresultFromObject(__uuidof(IAccessible), flags, this);
}

HRESULT CAccessibleProxy::AnswerNumber(VARIANT* answer, long number)
{
    if (!answer) {
        return E_INVALIDARG;
    }
    answer->vt = VT_I4;
    answer->lVal = number;
    return S_OK;
}

HRESULT CAccessibleProxy::AnswerText(BSTR* answer, const wchar_t* text)
{
    if (!answer) {
        return E_INVALIDARG;
    }
    *answer = ::SysAllocString(text);
    return *answer ? S_OK : E_OUTOFMEMORY;
}

// ---- IUnknown

HRESULT CAccessibleProxy::QueryInterface(REFIID id, void** object)
{
    if (!object) {
        return E_POINTER;
    }
    const bool isKnown = id == __uuidof(IUnknown) || id == __uuidof(IDispatch) || id == __uuidof(IAccessible);
    *object = isKnown ? static_cast<IAccessible*>(this) : nullptr;
    if (!isKnown) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG CAccessibleProxy::AddRef()
{
    return ++m_references;
}

ULONG CAccessibleProxy::Release()
{
    const ULONG left = --m_references;
    if (left == 0) {
        delete this;
    }
    return left;
}

// ---- IDispatch and IAccessible: the system's answers

HRESULT CAccessibleProxy::GetTypeInfoCount(UINT* count)
{
    return Forward([&](IAccessible& standard) { return standard.GetTypeInfoCount(count); });
}

HRESULT CAccessibleProxy::GetTypeInfo(UINT index, LCID language, ITypeInfo** information)
{
    return Forward([&](IAccessible& standard) { return standard.GetTypeInfo(index, language, information); });
}

HRESULT CAccessibleProxy::GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID language, DISPID* ids)
{
    return Forward(
        [&](IAccessible& standard) { return standard.GetIDsOfNames(id, names, count, language, ids); });
}

HRESULT CAccessibleProxy::Invoke(DISPID member, REFIID id, LCID language, WORD flags, DISPPARAMS* parameters,
                                 VARIANT* result, EXCEPINFO* exception, UINT* wrongParameter)
{
    return Forward([&](IAccessible& standard) {
        return standard.Invoke(member, id, language, flags, parameters, result, exception, wrongParameter);
    });
}

HRESULT CAccessibleProxy::get_accParent(IDispatch** parent)
{
    return Forward([&](IAccessible& standard) { return standard.get_accParent(parent); });
}

HRESULT CAccessibleProxy::get_accChildCount(long* count)
{
    return Forward([&](IAccessible& standard) { return standard.get_accChildCount(count); });
}

HRESULT CAccessibleProxy::get_accChild(VARIANT child, IDispatch** object)
{
    return Forward([&](IAccessible& standard) { return standard.get_accChild(child, object); });
}

HRESULT CAccessibleProxy::get_accName(VARIANT child, BSTR* name)
{
    return Forward([&](IAccessible& standard) { return standard.get_accName(child, name); });
}

HRESULT CAccessibleProxy::get_accValue(VARIANT child, BSTR* value)
{
    return Forward([&](IAccessible& standard) { return standard.get_accValue(child, value); });
}

HRESULT CAccessibleProxy::get_accDescription(VARIANT child, BSTR* description)
{
    return Forward([&](IAccessible& standard) { return standard.get_accDescription(child, description); });
}

HRESULT CAccessibleProxy::get_accRole(VARIANT child, VARIANT* role)
{
    return Forward([&](IAccessible& standard) { return standard.get_accRole(child, role); });
}

HRESULT CAccessibleProxy::get_accState(VARIANT child, VARIANT* state)
{
    return Forward([&](IAccessible& standard) { return standard.get_accState(child, state); });
}

HRESULT CAccessibleProxy::get_accHelp(VARIANT child, BSTR* help)
{
    return Forward([&](IAccessible& standard) { return standard.get_accHelp(child, help); });
}

HRESULT CAccessibleProxy::get_accHelpTopic(BSTR* file, VARIANT child, long* topic)
{
    return Forward([&](IAccessible& standard) { return standard.get_accHelpTopic(file, child, topic); });
}

HRESULT CAccessibleProxy::get_accKeyboardShortcut(VARIANT child, BSTR* shortcut)
{
    return Forward([&](IAccessible& standard) { return standard.get_accKeyboardShortcut(child, shortcut); });
}

HRESULT CAccessibleProxy::get_accFocus(VARIANT* child)
{
    return Forward([&](IAccessible& standard) { return standard.get_accFocus(child); });
}

HRESULT CAccessibleProxy::get_accSelection(VARIANT* children)
{
    return Forward([&](IAccessible& standard) { return standard.get_accSelection(children); });
}

HRESULT CAccessibleProxy::get_accDefaultAction(VARIANT child, BSTR* action)
{
    return Forward([&](IAccessible& standard) { return standard.get_accDefaultAction(child, action); });
}

HRESULT CAccessibleProxy::accSelect(long flags, VARIANT child)
{
    return Forward([&](IAccessible& standard) { return standard.accSelect(flags, child); });
}

HRESULT CAccessibleProxy::accLocation(long* left, long* top, long* width, long* height, VARIANT child)
{
    return Forward(
        [&](IAccessible& standard) { return standard.accLocation(left, top, width, height, child); });
}

HRESULT CAccessibleProxy::accNavigate(long direction, VARIANT start, VARIANT* end)
{
    return Forward([&](IAccessible& standard) { return standard.accNavigate(direction, start, end); });
}

HRESULT CAccessibleProxy::accHitTest(long x, long y, VARIANT* child)
{
    return Forward([&](IAccessible& standard) { return standard.accHitTest(x, y, child); });
}

HRESULT CAccessibleProxy::accDoDefaultAction(VARIANT child)
{
    return Forward([&](IAccessible& standard) { return standard.accDoDefaultAction(child); });
}

HRESULT CAccessibleProxy::put_accName(VARIANT child, BSTR name)
{
    return Forward([&](IAccessible& standard) { return standard.put_accName(child, name); });
}

HRESULT CAccessibleProxy::put_accValue(VARIANT child, BSTR value)
{
    return Forward([&](IAccessible& standard) { return standard.put_accValue(child, value); });
}
