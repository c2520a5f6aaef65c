// SPDX-License-Identifier: MIT
#include "reading/service_directory.h"

#include <array>
#include <cstdio>
#include <memory>
#include <new>

// libdvbpsi's headers lean on these.
#include <cstdbool>
#include <cstdint>

extern "C" {
#include <dvbpsi/dvbpsi.h>

#include <dvbpsi/descriptor.h>
#include <dvbpsi/pat.h>
#include <dvbpsi/pmt.h>
#include <dvbpsi/psi.h>
}

namespace caption
{

namespace
{

enum { PACKET = 188, SYNC = 0x47, CAPTION_SERVICE_DESCRIPTOR = 0x86 };

// The tables are repeated at least every 0.4 s, and the fastest broadcasts take 5 MB a second.
const long g_mostBytes = 16L << 20;

struct File {
    void operator()(std::FILE *file) const
    {
        std::fclose(file);
    }
};

void Append(std::vector<KovaCaptionsServiceInfo> &services, const dvbpsi_descriptor_t *descriptor)
{
    for (; descriptor; descriptor = descriptor->p_next) {
        KovaCaptionsServiceList list;
        if (descriptor->i_tag != CAPTION_SERVICE_DESCRIPTOR) continue;
        if (Kova_Captions_ReadServiceDescriptor(descriptor->p_data, descriptor->i_length, &list) < 0)
            continue;
        services.insert(services.end(), list.services, list.services + list.count);
    }
}

// A table's decoder. libdvbpsi calls back with the table once it is complete.
class Table
{
public:
    Table() : decoder_(dvbpsi_new(nullptr, DVBPSI_MSG_NONE))
    {
        if (!decoder_) throw std::bad_alloc();
    }
    Table(const Table &) = delete;
    Table &operator=(const Table &) = delete;
    virtual ~Table() = default;

    void Push(std::uint8_t *packet)
    {
        dvbpsi_packet_push(decoder_, packet);
    }

protected:
    dvbpsi_t *const decoder_; // NOLINT(misc-non-private-member-variables-in-classes): the tables attach to it
};

class ProgrammeMap : public Table
{
public:
    ProgrammeMap(int programme, ServiceDirectory &directory) : directory_(directory)
    {
        if (!dvbpsi_pmt_attach(decoder_, std::uint16_t(programme), OnTable, this)) throw std::bad_alloc();
    }
    ~ProgrammeMap() override
    {
        dvbpsi_pmt_detach(decoder_);
        dvbpsi_delete(decoder_);
    }

    bool complete() const
    {
        return complete_;
    }

private:
    static void OnTable(void *data, dvbpsi_pmt_t *table)
    {
        ProgrammeMap &self = *static_cast<ProgrammeMap *>(data);
        std::vector<KovaCaptionsServiceInfo> ofAll;

        Append(ofAll, table->p_first_descriptor);
        for (const dvbpsi_pmt_es_t *stream = table->p_first_es; stream && !self.complete_;
             stream = stream->p_next) {
            std::vector<KovaCaptionsServiceInfo> services;
            Append(services, stream->p_first_descriptor);
            if (services.empty()) services = ofAll;
            if (!services.empty()) self.directory_[stream->i_pid] = services;
        }
        self.complete_ = true;
        dvbpsi_pmt_delete(table);
    }

    ServiceDirectory &directory_;
    bool complete_ = false;
};

class ProgrammeAssociation : public Table
{
public:
    ProgrammeAssociation()
    {
        if (!dvbpsi_pat_attach(decoder_, OnTable, this)) throw std::bad_alloc();
    }
    ~ProgrammeAssociation() override
    {
        dvbpsi_pat_detach(decoder_);
        dvbpsi_delete(decoder_);
    }

    ServiceDirectory directory;
    std::map<int, std::unique_ptr<ProgrammeMap>> maps; // by PID

    bool complete() const
    {
        for (const auto &map : maps) {
            if (!map.second->complete()) return false;
        }
        return !maps.empty();
    }

private:
    static void OnTable(void *data, dvbpsi_pat_t *table)
    {
        ProgrammeAssociation &self = *static_cast<ProgrammeAssociation *>(data);

        for (const dvbpsi_pat_program_t *programme = table->p_first_program; programme;
             programme = programme->p_next) {
            const bool network = programme->i_number == 0;
            if (network || self.maps.count(programme->i_pid)) continue;
            self.maps[programme->i_pid] = std::make_unique<ProgrammeMap>(programme->i_number, self.directory);
        }
        dvbpsi_pat_delete(table);
    }
};

// How far apart packets are: 188 bytes, 192 with a time before each, 204 with a checksum behind; 0: this is
// no transport stream. `first` receives the place of the first one.
long PacketDistance(std::FILE *file, long &first)
{
    std::array<std::uint8_t, std::size_t(5) * 204> head;

    if (std::fread(head.data(), 1, head.size(), file) != head.size()) return 0;
    for (const long distance : {188L, 192L, 204L}) {
        for (first = 0; first < distance; ++first) {
            int found = 0;
            while (found < 4 && head[std::size_t(first + found * distance)] == SYNC) ++found;
            if (found == 4) return distance;
        }
    }
    return 0;
}

} // namespace

ServiceDirectory ReadServiceDirectory(const std::string &name)
{
    const std::unique_ptr<std::FILE, File> file(std::fopen(name.c_str(), "rb"));
    long at = 0;
    const long distance = file ? PacketDistance(file.get(), at) : 0;
    ProgrammeAssociation association;
    std::array<std::uint8_t, PACKET> packet;

    if (distance == 0) return {};
    for (; at < g_mostBytes && !association.complete(); at += distance) {
        if (std::fseek(file.get(), at, SEEK_SET) != 0) break;
        if (std::fread(packet.data(), 1, packet.size(), file.get()) != packet.size()) break;
        const int pid = (packet[1] & 0x1F) << 8 | packet[2];
        const auto map = association.maps.find(pid);
        if (packet[0] != SYNC) continue;
        if (pid == 0) association.Push(packet.data());
        if (map != association.maps.end()) map->second->Push(packet.data());
    }
    return association.directory;
}

} // namespace caption
