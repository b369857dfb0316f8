<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name></name>
    <message id="ID_GatherNotice_ActivityNotice">
        <source>Activity notices (%1)</source>
        <translation>活动通知 (%1)</translation>
    </message>
    <message id="ID_GatherNotice_LessonNotice">
        <source>Lesson notices (%1)</source>
        <translation>上课通知 (%1)</translation>
    </message>
    <message id="ID_Close">
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message id="ID_GatherNotice_CloseAccessibleName">
        <source>Close notices</source>
        <translation>关闭通知</translation>
    </message>
    <message id="ID_GatherNotice_ListAccessibleName">
        <source>Notices</source>
        <translation>通知列表</translation>
    </message>
    <message id="ID_ClassAheadNotice_LessonNotice">
        <source>Lesson Notice</source>
        <translation>上课提醒</translation>
    </message>
    <message id="ID_LMSClassAheadNotice_LessonWillStartAfter">
        <source>%1 will start in %2 minutes</source>
        <translation>%1 将在 %2 分钟后开始</translation>
    </message>
    <message id="ID_ClassAheadNotice_LessonWillStartAfterOneHour">
        <source>%1 will start at %2</source>
        <translation>%1 将于 %2 开始</translation>
    </message>
    <message id="ID_LMS_ClassStartNotice_LessonStart">
        <source>%1 has started</source>
        <translation>%1 已开始上课</translation>
    </message>
</context>
</TS>
