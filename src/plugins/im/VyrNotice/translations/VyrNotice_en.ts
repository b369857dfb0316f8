<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="ID_GatherNotice_ActivityNotice">
        <source>Activity notices (%1)</source>
        <translation>Activity notices (%1)</translation>
    </message>
    <message id="ID_GatherNotice_LessonNotice">
        <source>Lesson notices (%1)</source>
        <translation>Lesson notices (%1)</translation>
    </message>
    <message id="ID_Close">
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message id="ID_GatherNotice_CloseAccessibleName">
        <source>Close notices</source>
        <translation>Close notices</translation>
    </message>
    <message id="ID_GatherNotice_ListAccessibleName">
        <source>Notices</source>
        <translation>Notices</translation>
    </message>
    <message id="ID_ClassAheadNotice_LessonNotice">
        <source>Lesson Notice</source>
        <translation>Lesson Notice</translation>
    </message>
    <message id="ID_LMSClassAheadNotice_LessonWillStartAfter">
        <source>%1 will start in %2 minutes</source>
        <translation>%1 will start in %2 minutes</translation>
    </message>
    <message id="ID_ClassAheadNotice_LessonWillStartAfterOneHour">
        <source>%1 will start at %2</source>
        <translation>%1 will start at %2</translation>
    </message>
    <message id="ID_LMS_ClassStartNotice_LessonStart">
        <source>%1 has started</source>
        <translation>%1 has started</translation>
    </message>
</context>
</TS>
