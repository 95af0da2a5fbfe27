// Stores one object for each thread, found by the thread's id.
#pragma once

// A table of borrowed objects with one slot for each normalised thread id. Threads whose ids are
// equal modulo the number of slots share a slot. Create the instance before several threads use it.
class ThreadObjectSet {
public:
    // The one instance, made on the first call and never released.
    static ThreadObjectSet* Instance();

    // Doesn't clear the slots: a thread queries its slot only after add or remove.
    ThreadObjectSet();
    virtual ~ThreadObjectSet() = default;
    ThreadObjectSet(const ThreadObjectSet&) = delete;
    ThreadObjectSet& operator=(const ThreadObjectSet&) = delete;

    // The calling thread's object, null after remove. Undefined before the thread has called add or
    // remove.
    void* query();
    // Stores `object` in the calling thread's slot and replaces the former one.
    void add(void* object);
    // Empties the calling thread's slot.
    void remove();
    // The calling thread's id, reduced to a slot number.
    long getThreadId();

private:
    static constexpr long kSlots = 100000;

    static ThreadObjectSet* pGenericSet;

    void*& ownSlot();

    void* oObjects[kSlots];
};
