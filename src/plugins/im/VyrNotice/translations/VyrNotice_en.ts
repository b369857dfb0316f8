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
    <message id="ID_Cluster_Notice_Title_Notice">
        <source>Notice</source>
        <translation>Notice</translation>
    </message>
    <message id="ID_AddFriend_Request">
        <source>Friend Request</source>
        <translation>Friend Request</translation>
    </message>
    <message id="ID_GatherNotice_FriendRequest">
        <source>Someone has asked to add you as a friend. Click to see the request.</source>
        <translation>Someone has asked to add you as a friend. Click to see the request.</translation>
    </message>
    <message id="ID_StudyReportNotice_LearningReport">
        <source>Learning report</source>
        <translation>Learning report</translation>
    </message>
    <message id="ID_StudyReportNotice_TeachingReport">
        <source>Teaching report</source>
        <translation>Teaching report</translation>
    </message>
    <message id="ID_StudyReportNotice_GoodJobInLesson">
        <source>Your report for%1is ready. Well done!</source>
        <translation>Your report for%1is ready. Well done!</translation>
    </message>
    <message id="ID_StudyReportNotice_TeachingReportOK">
        <source>The teaching report for%1is ready</source>
        <translation>The teaching report for%1is ready</translation>
    </message>
    <message id="ID_Enter_Classroom">
        <source>Enter class</source>
        <translation>Enter class</translation>
    </message>
    <message id="ID_PopNotice_CloseAccessibleName">
        <source>Close notice</source>
        <translation>Close notice</translation>
    </message>
    <message id="ID_ClassAheadNotice_Known">
        <source>Got it</source>
        <translation>Got it</translation>
    </message>
    <message id="ID_LMSClassPrepareNotice_LessonStart">
        <source>Class is starting</source>
        <translation>Class is starting</translation>
    </message>
    <message id="ID_ClassNotice_Later">
        <source>Later</source>
        <translation>Later</translation>
    </message>
    <message id="ID_FriendRequestNotice_NewMessage">
        <source>New Message</source>
        <translation>New Message</translation>
    </message>
    <message id="ID_FriendRequest">
        <source>Friend request</source>
        <translation>Friend request</translation>
    </message>
    <message id="ID_NotAuthSchoolNotice_NeedCertification">
        <source>Your school has not been certified yet. Certify it to use all of the school's services.</source>
        <translation>Your school has not been certified yet. Certify it to use all of the school's services.</translation>
    </message>
    <message id="ID_NotAuthSchoolNotice_NoMoreRemind">
        <source>Don't remind me again</source>
        <translation>Don't remind me again</translation>
    </message>
    <message id="ID_NotAuthSchoolNotice_Certification">
        <source>Certify</source>
        <translation>Certify</translation>
    </message>
    <message id="ID_Cancel">
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <!-- Study activity, micro-course and study report pop-ups. -->
    <message id="ID_HomeworkNotice_TaskNotice">
        <source>Assignment notice</source>
        <translation>Assignment notice</translation>
    </message>
    <message id="ID_MicroCourseNotice_Notice">
        <source>Micro-lecture notice</source>
        <translation>Micro-lecture notice</translation>
    </message>
    <message id="ID_MicroCourseNotice_YourMicrolectureAuditFailed">
        <source>Your micro-lecture did not pass the review. Please revise it.</source>
        <translation>Your micro-lecture did not pass the review. Please revise it.</translation>
    </message>
    <message id="ID_MicroCourseNotice_ViewDetails">
        <source>View details</source>
        <translation>View details</translation>
    </message>
    <message id="ID_MicroCourseNotice_Later">
        <source>Later</source>
        <translation>Later</translation>
    </message>
</context>
</TS>
