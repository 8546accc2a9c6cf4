#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>

/// A keyed store of values that may be dropped to stay within its limits, safe to use from
/// several threads at once.
///
/// Limits: `countLimit` (number of entries) and `totalCostLimit` (sum of the costs given to
/// `setObject`); 0 means no limit. When an insertion exceeds a limit, the least recently used
/// entries are evicted first (a read counts as a use) until the cache fits again; an entry whose
/// cost alone exceeds the total-cost limit is not kept at all.
template <class Key, class Value>
class VLXCache : public VLXObject {
public:
    static std::shared_ptr<VLXCache> create() { return makeInitialized<VLXCache>(); }

    /// The stored value, or nothing.
    std::optional<Value> objectForKey(const Key& key) {
        std::lock_guard lock(m_mutex);
        auto found = m_index.find(key);
        if (found == m_index.end()) {
            return std::nullopt;
        }
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        return found->second->value;
    }

    /// Stores `value` under `key`, replacing what was there.
    void setObject(Value value, const Key& key, std::size_t cost = 0) {
        std::lock_guard lock(m_mutex);
        eraseLocked(key);
        if (m_totalCostLimit != 0 && cost > m_totalCostLimit) {
            return;
        }
        m_entries.push_front(Entry{key, std::move(value), cost});
        m_index.emplace(key, m_entries.begin());
        m_totalCost += cost;
        trimLocked();
    }

    void removeObjectForKey(const Key& key) {
        std::lock_guard lock(m_mutex);
        eraseLocked(key);
    }

    void removeAllObjects() {
        std::lock_guard lock(m_mutex);
        m_index.clear();
        m_entries.clear();
        m_totalCost = 0;
    }

    std::size_t count() const {
        std::lock_guard lock(m_mutex);
        return m_entries.size();
    }

    std::size_t countLimit() const {
        std::lock_guard lock(m_mutex);
        return m_countLimit;
    }
    /// Lowering the limit evicts at once.
    void setCountLimit(std::size_t limit) {
        std::lock_guard lock(m_mutex);
        m_countLimit = limit;
        trimLocked();
    }

    std::size_t totalCostLimit() const {
        std::lock_guard lock(m_mutex);
        return m_totalCostLimit;
    }
    void setTotalCostLimit(std::size_t limit) {
        std::lock_guard lock(m_mutex);
        m_totalCostLimit = limit;
        trimLocked();
    }

    std::string name() const {
        std::lock_guard lock(m_mutex);
        return m_name;
    }
    void setName(std::string name) {
        std::lock_guard lock(m_mutex);
        m_name = std::move(name);
    }

protected:
    VLXCache() = default;

private:
    struct Entry {
        Key key;
        Value value;
        std::size_t cost = 0;
    };
    using Entries = std::list<Entry>;

    void eraseLocked(const Key& key) {
        auto found = m_index.find(key);
        if (found == m_index.end()) {
            return;
        }
        m_totalCost -= found->second->cost;
        m_entries.erase(found->second);
        m_index.erase(found);
    }

    void trimLocked() {
        while (!m_entries.empty() && ((m_countLimit != 0 && m_entries.size() > m_countLimit) ||
                                      (m_totalCostLimit != 0 && m_totalCost > m_totalCostLimit))) {
            const Entry& oldest = m_entries.back();
            m_totalCost -= oldest.cost;
            m_index.erase(oldest.key);
            m_entries.pop_back();
        }
    }

    mutable std::mutex m_mutex;
    Entries m_entries;  // most recently used first
    std::unordered_map<Key, typename Entries::iterator> m_index;
    std::size_t m_countLimit = 0;
    std::size_t m_totalCostLimit = 0;
    std::size_t m_totalCost = 0;
    std::string m_name;
};
