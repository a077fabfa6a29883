#pragma once

#include "scene/AddressSanitizer.h"

#include <QtGlobal>

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace NELK
{

/// Owns all records of one kind. Records made one after the other lie side by side, so that a walk over a scene reads
/// memory in order; the place of a destroyed record is taken by the next one created.
///
/// Since addresses come again, an address does not tell one record from another that lived there before. The serial
/// does: each record gets one that the pool never gives again.
template <typename Record>
class RecordPool
{
public:
    RecordPool() = default;
    ~RecordPool() { clear(); }
    Q_DISABLE_COPY(RecordPool)

    template <typename... Arguments>
    Record* create(Arguments&&... arguments)
    {
        Slot* slot = takeFreeSlot();
        allowAccess(slot->bytes, sizeof(Record));
        auto* record = new (slot->bytes) Record(std::forward<Arguments>(arguments)...);
        slot->serial = ++m_lastSerial;
        return record;
    }

    void destroy(Record* record)
    {
        auto* slot = const_cast<Slot*>(slotOf(record));
        destroyIn(*slot);
        m_free.push_back(slot);
    }

    /// Destroys all records and gives their memory back. Serials go on where they were.
    void clear()
    {
        for (const std::unique_ptr<Slot[]>& chunk : m_chunks) {
            for (std::size_t i = 0; i < slotsPerChunk; ++i) {
                if (chunk[i].serial != noRecord)
                    destroyIn(chunk[i]);
                allowAccess(chunk[i].bytes, sizeof(Record));
            }
        }
        m_chunks.clear();
        m_free.clear();
        m_usedInLastChunk = slotsPerChunk;
    }

    /// The serial of a record that is alive.
    static quint64 serialOf(const Record* record) { return slotOf(record)->serial; }

private:
    static constexpr quint64 noRecord = 0;

    struct Slot
    {
        quint64 serial = noRecord; // first, beside the fields that are read most
        alignas(Record) std::byte bytes[sizeof(Record)];
    };

    static constexpr std::size_t slotsPerChunk = 128;

    static const Slot* slotOf(const Record* record)
    {
        return reinterpret_cast<const Slot*>(reinterpret_cast<const std::byte*>(record) - offsetof(Slot, bytes));
    }

    static void destroyIn(Slot& slot)
    {
        std::launder(reinterpret_cast<Record*>(slot.bytes))->~Record();
        slot.serial = noRecord;
        forbidAccess(slot.bytes, sizeof(Record));
    }

    Slot* takeFreeSlot()
    {
        if (!m_free.empty()) {
            Slot* slot = m_free.back();
            m_free.pop_back();
            return slot;
        }
        if (m_usedInLastChunk == slotsPerChunk) {
            m_chunks.emplace_back(new Slot[slotsPerChunk]);
            m_usedInLastChunk = 0;
        }
        return &m_chunks.back()[m_usedInLastChunk++];
    }

    std::vector<std::unique_ptr<Slot[]>> m_chunks;
    std::size_t m_usedInLastChunk = slotsPerChunk;
    std::vector<Slot*> m_free;
    quint64 m_lastSerial = noRecord;
};

} // namespace NELK
