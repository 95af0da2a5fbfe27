// One object for each thread, found by the thread's identity.
#pragma once

// A table of borrowed objects with one slot for each normalised thread id. Threads whose ids are
// equal modulo the number of slots share a slot. Not for use by several threads at the same time
// before the one instance exists.
class ThreadObjectSet {
public:
    // The one instance, made on the first call and never released.
    static ThreadObjectSet* Instance();

    // Leaves the slots as they are: a thread asks only for what it has added.
    ThreadObjectSet();
    virtual ~ThreadObjectSet() = default;
    ThreadObjectSet(const ThreadObjectSet&) = delete;
    ThreadObjectSet& operator=(const ThreadObjectSet&) = delete;

    // The calling thread's object. Defined once the thread has called add or remove.
    void* query();
    // Puts `object` into the calling thread's slot, over whatever was there.
    void add(void* object);
    // Empties the calling thread's slot.
    void remove();
    // The calling thread's id brought down to a slot number.
    long getThreadId();

private:
    static constexpr long kSlots = 100000;

    static ThreadObjectSet* pGenericSet;

    void*& ownSlot();

    void* oObjects[kSlots];
};
