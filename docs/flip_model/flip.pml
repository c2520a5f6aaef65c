/* SPDX-License-Identifier: MIT */
/* How frames reach the screen: two callers that draw and flip, the flip thread, a clock, and an owner of the
 * contexts that starts the thread, ends it and starts it again. One step is what one thread does between two
 * points at which another thread can interleave. The names are those of Src/kova_textdisp_dfb/presentation.
 *
 * Each of these removes a safeguard and must make a property fail:
 *   NO_NOTE   the thread waits without reading the request flag and the stop flag first
 *   NO_PASS   the requester does not pass through flip_thread_mutex before the signal
 *   NO_STAMP  a direct flip does not update the time of the last one
 *   NO_MARK   drawing does not cancel the pending flip
 *   NO_GUARD  a request is signalled whether a thread exists or not
 *   NO_AWAIT  with SECOND_OWNER: a new context does not wait for a thread that is ending
 * This one adds a race, and all properties must hold:
 *   SECOND_OWNER  another thread creates a context while the owner destroys the last one
 */

#ifndef OPERATIONS
#define OPERATIONS 3 /* per caller, at most */
#endif
#define FRAME 2      /* 16 ms in ticks of the clock; also how long the thread sleeps */

/* The record. */
byte display_mutex, flip_thread_mutex; /* 0: free, otherwise the holder */
byte flip_thread_ref;
bool flip_thread_stop, bFlipPosted;
bool blast_frame_changed = true;

/* The thread: whether it waits on the condition, was started, has ended, and how long it still sleeps. */
bool waiting, started, ended;
byte asleep;

/* The clock: ticks since the last stamp of a direct flip, and since the time was last read, FRAME for longer. */
byte age = FRAME, since;

/* What the properties refer to. */
bool made;         /* flip_thread_mutex and flip_thread_cond exist */
bool joining;      /* the owner waits for the thread to end */
bool dirty;        /* something was drawn since the last flip */
bool owed;         /* ... and its flip was requested while a thread existed */
bool newer;        /* something was drawn or flipped since a flip was last deferred */
byte gap = FRAME;  /* ticks since the last direct flip, independent of the stamp */
byte contexts;

#define orphaned (contexts > 0 && !started)

ltl last_frame_is_flipped { [] (owed -> <> !owed) }
ltl stop_ends_the_thread { [] (joining -> <> !joining) }
ltl every_context_has_a_thread { [] (orphaned -> <> !orphaned) }

/* The other properties are assertions: they concern one state only. */
#define DIRECT_FLIPS_KEEP_THEIR_DISTANCE assert(distance >= FRAME)
#define SUPERSEDED_FRAME_IS_NOT_FLIPPED assert(!newer)
#define NOTHING_DESTROYED_IS_TOUCHED assert(made)

inline Lock(m)
{
    atomic { m == 0 -> m = _pid + 1 }
}

inline Unlock(m)
{
    m = 0
}

/* With display_mutex held. */
inline Wake(note)
{
    if
#ifndef NO_GUARD
    :: flip_thread_ref == 0 || flip_thread_stop -> skip
#endif
    :: else ->
        note = true;
#ifndef NO_PASS
        atomic { NOTHING_DESTROYED_IS_TOUCHED; flip_thread_mutex == 0 -> flip_thread_mutex = _pid + 1 }
        Unlock(flip_thread_mutex);
#endif
        atomic { NOTHING_DESTROYED_IS_TOUCHED; waiting = false } /* the signal */
    fi
}

inline FilpInternal()
{
    atomic { seen = age; distance = gap; since = 0; owed = dirty && started && !flip_thread_stop } /* gettimeofday */
    if
    :: seen < FRAME ->
        atomic { blast_frame_changed = false; newer = false }
        Wake(bFlipPosted)
    :: else ->
        atomic {
            DIRECT_FLIPS_KEEP_THEIR_DISTANCE;
            dirty = false;
            owed = false;
            newer = true
        }
        atomic {
            blast_frame_changed = true;
            gap = since;
#ifndef NO_STAMP
            age = since
#endif
        }
    fi;
    seen = 0;
    distance = 0
}

proctype Caller()
{
    byte operations, seen, distance;

    do
    :: operations < OPERATIONS ->
        operations++;
        Lock(display_mutex);
        if
        :: FilpInternal()
        :: /* drawing */
            atomic {
                dirty = true;
                owed = false;
                newer = true;
#ifndef NO_MARK
                blast_frame_changed = true
#endif
            }
        fi;
        Unlock(display_mutex)
    :: break
    od
}

proctype FlipThread()
{
again:
    atomic { NOTHING_DESTROYED_IS_TOUCHED; flip_thread_mutex == 0 -> flip_thread_mutex = _pid + 1 }
#ifdef NO_NOTE
    atomic { NOTHING_DESTROYED_IS_TOUCHED; Unlock(flip_thread_mutex); waiting = true }
#else
    if
    :: bFlipPosted || flip_thread_stop -> goto awake
    :: else
    fi;
    atomic { NOTHING_DESTROYED_IS_TOUCHED; Unlock(flip_thread_mutex); waiting = true }
#endif
end_idle: /* a valid end state */
    !waiting;
    Lock(flip_thread_mutex);
awake:
    bFlipPosted = false;
    atomic { NOTHING_DESTROYED_IS_TOUCHED; Unlock(flip_thread_mutex) }

    Lock(display_mutex);
    if
    :: flip_thread_stop -> goto out
    :: else
    fi;
    Unlock(display_mutex);

    asleep = FRAME;
    asleep == 0;

    Lock(display_mutex);
    if
    :: flip_thread_stop -> goto out
    :: else
    fi;
    bFlipPosted = false;
    if
    :: !blast_frame_changed ->
        atomic {
            SUPERSEDED_FRAME_IS_NOT_FLIPPED;
            dirty = false;
            owed = false
        }
    :: else
    fi;
    Unlock(display_mutex);
    goto again;
out:
    Unlock(display_mutex);
    ended = true
}

inline CreateContext()
{
    Lock(display_mutex);
#ifndef NO_AWAIT
    /* It sleeps without the lock and looks again. */
    do
    :: flip_thread_ref != 0 && flip_thread_stop ->
        Unlock(display_mutex);
        !(flip_thread_ref != 0 && flip_thread_stop);
        Lock(display_mutex)
    :: else -> break
    od;
#endif
    if
    :: flip_thread_ref == 0 ->
        atomic {
            made = true;
            flip_thread_stop = false;
            bFlipPosted = false;
            ended = false;
            started = true;
            run FlipThread()
        }
    :: else
    fi;
    atomic { flip_thread_ref++; contexts++ }
    Unlock(display_mutex)
}

inline DestroyContext()
{
    Lock(display_mutex);
    atomic { last = flip_thread_ref == 1; contexts-- }
    if
    :: last ->
        atomic { joining = true; owed = false } /* a pending flip is dropped */
        Wake(flip_thread_stop)
    :: flip_thread_ref > 1 -> flip_thread_ref--
    :: else
    fi;
    Unlock(display_mutex);
    if
    :: last ->
        ended; /* pthread_join */
        joining = false;
        atomic { made = false; started = false }
        flip_thread_ref = 0
    :: else
    fi;
    last = false
}

/* It can stop after each step. */
proctype Owner()
{
    bool last;

    CreateContext();
    if
    :: DestroyContext();
        if
        :: CreateContext();
            if
            :: DestroyContext()
            :: skip
            fi
        :: skip
        fi
    :: skip
    fi
}

#ifdef SECOND_OWNER
proctype SecondOwner()
{
    CreateContext()
}
#endif

/* Time passes whenever it makes a difference, and there is one spurious wake-up. */
proctype Clock()
{
    bool spurious;

end:
    do
    :: atomic {
           age < FRAME || since < FRAME || gap < FRAME || asleep > 0 ->
           age = (age < FRAME -> age + 1 : age);
           since = (since < FRAME -> since + 1 : since);
           gap = (gap < FRAME -> gap + 1 : gap);
           asleep = (asleep > 0 -> asleep - 1 : asleep)
       }
    :: atomic { waiting && !spurious -> spurious = true; waiting = false }
    od
}

init
{
    atomic {
        run Owner();
#ifdef SECOND_OWNER
        run SecondOwner();
#endif
        run Caller();
        run Caller();
        run Clock()
    }
}
