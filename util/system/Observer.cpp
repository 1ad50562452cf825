#include "system/Observer.h"

#include <algorithm>

CObserver::~CObserver() = default;

CSubject::~CSubject() { m_observers.clear(); }

void CSubject::Attach(CObserver* observer) { m_observers.push_back(observer); }

void CSubject::Detach(CObserver* observer) {
    auto it = std::find(m_observers.begin(), m_observers.end(), observer);
    if (it != m_observers.end())
        m_observers.erase(it);
}

void CSubject::Notify(CSubject* source) {
    CSubject* subject = source ? source : this;
    for (auto it = m_observers.begin(); it != m_observers.end();) {
        // Step past the entry before calling it: Update may detach the observer, which erases the entry.
        CObserver* observer = *it++;
        observer->Update(subject);
    }
}
