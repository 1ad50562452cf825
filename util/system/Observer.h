// CSubject / CObserver: change notification between objects of the suite. A subject keeps an ordered list
// of observers (it does not own them) and calls each one when told to notify.
#pragma once

#include "../platform/Export.h"

#include <list>

class CSubject;

class TAVUTIL_API CObserver {
public:
    virtual ~CObserver();
    virtual void Update(CSubject* subject) = 0;

protected:
    CObserver() = default;
    CObserver(const CObserver&) {}
    CObserver& operator=(const CObserver&) { return *this; }
};

class TAVUTIL_API CSubject {
public:
    virtual ~CSubject();

    // Appends at the tail; an observer attached twice is listed (and updated) twice.
    virtual void Attach(CObserver* observer);
    // Removes the first occurrence, if any.
    virtual void Detach(CObserver* observer);
    // Calls Update on each observer, head to tail, with `source` (or this subject when null). An observer
    // may detach itself from inside its Update.
    virtual void Notify(CSubject* source = nullptr);

protected:
    CSubject() = default;

private:
    std::list<CObserver*> m_observers;
};
