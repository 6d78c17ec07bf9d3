/* SPDX-License-Identifier: Apache-2.0 */
/* Calls that try a server which the caller describes; they share nothing with the session but the log level. */
#include "core/log.h"
#include "session/registration.h"
#include "session/session.h"
#include "session/unregistration.h"

u32 PubSecStackPostRegisterExt(const TPubSecRegParam* ptParam)
{
    if (ptParam == nullptr)
    {
        return 0;
    }
    TPubSecTarget tTarget;
    PubSecTargetOf(ptParam, &tTarget);
    const TPubSecRegistration tRegistration = {__func__, &tTarget, tTarget.achDeviceID, PUBSEC_DIRECT};
    return PubSecRegisterOnce(&tRegistration) ? 1 : 0;
}

u32 PubSecPostUserUnRegisterMsgExt(const TPubSecRegParam* ptParam)
{
    if (ptParam == nullptr)
    {
        return PUBSEC_ERR_NULL_RECORD;
    }
    TPubSecTarget tTarget;
    PubSecTargetOf(ptParam, &tTarget);
    const TPubSecUnregistration tUnregistration = {__func__, &tTarget};
    return PubSecUnregisterOnce(&tUnregistration);
}

u32 PubSecStackTestRegister(const TPubSecRegParam* ptParam)
{
    if (PubSecStackPostRegisterExt(ptParam) != 1)
    {
        PUBSEC_ERR("PubSecStackPostRegister Failed.");
        return PUBSEC_ERR_FAILED;
    }
    PUBSEC_DBG("PubSecStackPostRegister SUCCESS.");
    PubSecPostUserUnRegisterMsgExt(ptParam);
    return PUBSEC_OK;
}
