/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The same documents as other writers make them, with the calls that their users write. The calls are the same for all
 * (Out), so that the documents differ in nothing but their maker.
 */
#ifndef PUBSEC_BENCH_WRITERS_H
#define PUBSEC_BENCH_WRITERS_H

#include <string>
#include <vector>

#include <cjson/cJSON.h>
#include <nlohmann/json.hpp>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "members.h"

namespace bench
{

/* What all writers share: flags of fields. */
template <typename Derived> class Out
{
  public:
    template <typename Number> void number(const char* key, u32 flag, Number value)
    {
        if (flag != 0)
        {
            static_cast<Derived*>(this)->number(key, value);
        }
    }

    void oneOrZero(const char* key, u32 value)
    {
        static_cast<Derived*>(this)->text(key, value == 1 ? "1" : "0");
    }

    void textPointer(const char* key, const char* value)
    {
        static_cast<Derived*>(this)->text(key, value);
    }
};

/* cJSON by hand: AddStringToObject, AddNumberToObject, PrintUnformatted. */
class CjsonOut : public Out<CjsonOut>
{
  public:
    using Out::number;

    CjsonOut() : m_parents{cJSON_CreateObject()}
    {
    }

    void text(const char* key, const char* value)
    {
        cJSON_AddStringToObject(m_parents.back(), key, value);
    }

    void number(const char* key, double value)
    {
        cJSON_AddNumberToObject(m_parents.back(), key, value);
    }

    void beginObject(const char* key)
    {
        m_parents.push_back(cJSON_AddObjectToObject(m_parents.back(), key));
    }

    void beginArray(const char* key)
    {
        m_parents.push_back(cJSON_AddArrayToObject(m_parents.back(), key));
    }

    void beginElement()
    {
        cJSON* element = cJSON_CreateObject();
        cJSON_AddItemToArray(m_parents.back(), element);
        m_parents.push_back(element);
    }

    void end()
    {
        m_parents.pop_back();
    }

    void endArray()
    {
        m_parents.pop_back();
    }

    /* The text, for cJSON_free. */
    char* finish()
    {
        char* text = cJSON_PrintUnformatted(m_parents.front());
        cJSON_Delete(m_parents.front());
        return text;
    }

  private:
    std::vector<cJSON*> m_parents;
};

/*
 * The least that cJSON takes for what is in a record: texts and keys are referred to, empty texts left out, and the
 * document printed where there is room for it.
 */
class SparingCjsonOut : public Out<SparingCjsonOut>
{
  public:
    using Out::number;

    SparingCjsonOut() : m_parents{cJSON_CreateObject()}
    {
    }

    ~SparingCjsonOut()
    {
        cJSON_Delete(m_parents[0]);
    }

    SparingCjsonOut(const SparingCjsonOut&) = delete;
    SparingCjsonOut& operator=(const SparingCjsonOut&) = delete;

    void text(const char* key, const char* value)
    {
        if (value[0] != '\0')
        {
            add(key, cJSON_CreateStringReference(value));
        }
    }

    void number(const char* key, double value)
    {
        add(key, cJSON_CreateNumber(value));
    }

    void beginObject(const char* key)
    {
        begin(key, cJSON_CreateObject());
    }

    void beginArray(const char* key)
    {
        begin(key, cJSON_CreateArray());
    }

    void beginElement()
    {
        cJSON* const element = cJSON_CreateObject();
        cJSON_AddItemToArray(m_parents[m_depth], element);
        m_parents[++m_depth] = element;
    }

    void end()
    {
        --m_depth;
    }

    void endArray()
    {
        --m_depth;
    }

    bool printInto(char* place, int size)
    {
        return cJSON_PrintPreallocated(m_parents[0], place, size, 0) != 0;
    }

  private:
    void add(const char* key, cJSON* value)
    {
        cJSON_AddItemToObjectCS(m_parents[m_depth], key, value);
    }

    void begin(const char* key, cJSON* value)
    {
        add(key, value);
        m_parents[++m_depth] = value;
    }

    cJSON* m_parents[8];
    size_t m_depth = 0;
};

/* RapidJSON's writer, which keeps no tree. */
class RapidOut : public Out<RapidOut>
{
  public:
    using Out::number;

    RapidOut() : m_writer(m_buffer)
    {
        m_writer.StartObject();
    }

    void text(const char* key, const char* value)
    {
        m_writer.Key(key);
        m_writer.String(value);
    }

    void number(const char* key, u32 value)
    {
        m_writer.Key(key);
        m_writer.Uint(value);
    }

    void number(const char* key, s32 value)
    {
        m_writer.Key(key);
        m_writer.Int(value);
    }

    void number(const char* key, double value)
    {
        m_writer.Key(key);
        m_writer.Double(value);
    }

    void beginObject(const char* key)
    {
        m_writer.Key(key);
        m_writer.StartObject();
    }

    void beginArray(const char* key)
    {
        m_writer.Key(key);
        m_writer.StartArray();
    }

    void beginElement()
    {
        m_writer.StartObject();
    }

    void end()
    {
        m_writer.EndObject();
    }

    void endArray()
    {
        m_writer.EndArray();
    }

    /* The text, which belongs to the writer. */
    const char* finish()
    {
        m_writer.EndObject();
        return m_buffer.GetString();
    }

  private:
    rapidjson::StringBuffer m_buffer;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer;
};

/* nlohmann::json with members in the order in which they are added. */
class NlohmannOut : public Out<NlohmannOut>
{
  public:
    using Out::number;

    NlohmannOut() : m_root(nlohmann::ordered_json::object()), m_parents{&m_root}
    {
    }

    void text(const char* key, const char* value)
    {
        (*m_parents.back())[key] = value;
    }

    template <typename Number> void number(const char* key, Number value)
    {
        (*m_parents.back())[key] = value;
    }

    void beginObject(const char* key)
    {
        begin((*m_parents.back())[key], nlohmann::ordered_json::object());
    }

    void beginArray(const char* key)
    {
        begin((*m_parents.back())[key], nlohmann::ordered_json::array());
    }

    void beginElement()
    {
        nlohmann::ordered_json& array = *m_parents.back();
        array.push_back(nlohmann::ordered_json::object());
        m_parents.push_back(&array.back());
    }

    void end()
    {
        m_parents.pop_back();
    }

    void endArray()
    {
        m_parents.pop_back();
    }

    std::string finish()
    {
        return m_root.dump();
    }

  private:
    void begin(nlohmann::ordered_json& place, nlohmann::ordered_json&& empty)
    {
        place = std::move(empty);
        m_parents.push_back(&place);
    }

    nlohmann::ordered_json m_root;
    std::vector<nlohmann::ordered_json*> m_parents; /* of which only the innermost one grows */
};

template <typename Out, typename Record> void writeObject(Out& out, const Record& record)
{
    membersOf(out, record);
    if (record.nSubImageNum > 0)
    {
        out.beginObject("SubImageList");
        out.beginArray("SubImageInfoObject");
        for (s32 index = 0; index < record.nSubImageNum; ++index)
        {
            out.beginElement();
            subImageMembers(out, record.ptSubImageList[index]);
            out.end();
        }
        out.endArray();
        out.end();
    }
}

/* {list: {object: [...]}} */
template <typename Out, typename Record>
void writeList(Out& out, const char* list, const char* object, const Record* records, size_t count)
{
    out.beginObject(list);
    out.beginArray(object);
    for (size_t index = 0; index < count; ++index)
    {
        out.beginElement();
        writeObject(out, records[index]);
        out.end();
    }
    out.endArray();
    out.end();
}

/* The document of a picture with one image and its faces. */
template <typename Out> void writePicture(Out& out, const TPubSecIntelliPicObj& picture)
{
    out.beginObject("ImageListObject");
    out.beginArray("Image");
    out.beginElement();
    out.beginObject("ImageInfo");
    imageMembers(out, *static_cast<const TPubSecImageObjInfo*>(picture.ptImageInfo));
    out.end();
    if (picture.nFaceNum > 0)
    {
        writeList(out, "FaceList", "FaceObject", picture.ptFace, static_cast<size_t>(picture.nFaceNum));
    }
    out.text("Data", picture.pchData);
    out.end();
    out.endArray();
    out.end();
}

} // namespace bench

#endif
