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
    <!-- Exam and homework pop-ups -->
    <message id="ID_ExamNotice_TestNotice">
        <source>Test notice</source>
        <translation>Test notice</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskNotice">
        <source>Homework notice</source>
        <translation>Homework notice</translation>
    </message>
    <!-- Study activity, micro-course and study report pop-ups. -->
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
    <message id="ID_ExamNotice_TestStartedSubmitOnTime">
        <source>The test %1 has started. Please submit it on time.</source>
        <translation>The test %1 has started. Please submit it on time.</translation>
    </message>
    <message id="ID_ExamNotice_TestBeReviewedCheck">
        <source>Your test %1 has been reviewed. Check it now.</source>
        <translation>Your test %1 has been reviewed. Check it now.</translation>
    </message>
    <message id="ID_ExamNotice_TestBeReviewedAgainCheck">
        <source>Your test %1 has been reviewed again. Check it now.</source>
        <translation>Your test %1 has been reviewed again. Check it now.</translation>
    </message>
    <message id="ID_ExamNotice_TestWillExpire">
        <source>The test %1 closes in %2 hours. Please submit it in time.</source>
        <translation>The test %1 closes in %2 hours. Please submit it in time.</translation>
    </message>
    <message id="ID_ExamNotice_TestBeSubmitCkeck">
        <source>%1 submitted the test %2. Review it now.</source>
        <translation>%1 submitted the test %2. Review it now.</translation>
    </message>
    <message id="ID_ExamNotice_TestBeSubmitLaterCkeck">
        <source>%1 submitted the test %2 late. Review it now.</source>
        <translation>%1 submitted the test %2 late. Review it now.</translation>
    </message>
    <message id="ID_HomeworkNotice_TestStartedSubmitOnTime">
        <source>The homework %1 is out. Please submit it on time.</source>
        <translation>The homework %1 is out. Please submit it on time.</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskNeedBeReviewCheck">
        <source>Your homework %1 has been reviewed. Check it now.</source>
        <translation>Your homework %1 has been reviewed. Check it now.</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskNeedBeRevised">
        <source>Your homework %1 came back for revision. Please revise it.</source>
        <translation>Your homework %1 came back for revision. Please revise it.</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskNeedBeReviewAgainCheck">
        <source>Your homework %1 has been reviewed again. Check it now.</source>
        <translation>Your homework %1 has been reviewed again. Check it now.</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskUnFinishedSubmitInTime">
        <source>You haven't finished the homework %1. Please submit it in time.</source>
        <translation>You haven't finished the homework %1. Please submit it in time.</translation>
    </message>
    <message id="ID_HomeworkNotice_TestWillExpire">
        <source>The homework %1 is due in %2 hours. Please submit it in time.</source>
        <translation>The homework %1 is due in %2 hours. Please submit it in time.</translation>
    </message>
    <message id="ID_HomeworkNotice_RemindStuSubmitAgain">
        <source>Please submit the homework %1 again.</source>
        <translation>Please submit the homework %1 again.</translation>
    </message>
    <message id="ID_HomeworkNotice_TestBeSubmitCkeck">
        <source>%1 submitted the homework %2. Review it now.</source>
        <translation>%1 submitted the homework %2. Review it now.</translation>
    </message>
    <message id="ID_HomeworkNotice_RevisedTaskCheck">
        <source>%1 submitted the revised homework %2. Review it now.</source>
        <translation>%1 submitted the revised homework %2. Review it now.</translation>
    </message>
    <message id="ID_HomeworkNotice_TestBeSubmitLaterCkeck">
        <source>%1 submitted the homework %2 late. Review it now.</source>
        <translation>%1 submitted the homework %2 late. Review it now.</translation>
    </message>
    <!-- The cluster notice reminder. -->
    <message id="ID_Notice_ViewNow">
        <source>View now</source>
        <translation>View now</translation>
    </message>
    <message id="ID_Requesting">
        <source>Requesting...</source>
        <translation>Requesting...</translation>
    </message>
    <message id="ID_Notice_NoticeDeleted">
        <source>This notice has been deleted</source>
        <translation>This notice has been deleted</translation>
    </message>
    <message id="ID_friendrequesttreeview_NewFriend">
        <source>New Friends</source>
        <translation>New Friends</translation>
    </message>
    <message id="ID_friendrequesttreeview_NewFriendRequest">
        <source>Friend Requests</source>
        <translation>Friend Requests</translation>
    </message>
    <message id="ID_AddFriends">
        <source>Add Friends</source>
        <translation>Add Friends</translation>
    </message>
    <message id="ID_friendrequesttreeview_PersonDetail">
        <source>View Profile</source>
        <translation>View Profile</translation>
    </message>
    <message id="ID_friendrequesttreeview_DeleteMessage">
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message id="ID_friendrequesttreeview_IFDeleteFrindRequest">
        <source>Delete the friend request from %1?</source>
        <translation>Delete the friend request from %1?</translation>
    </message>
    <message id="ID_friendrequesttreeview_RequestTimeOut">
        <source>This request has expired: requests can only be answered within 7 days.</source>
        <translation>This request has expired: requests can only be answered within 7 days.</translation>
    </message>
    <message id="ID_friendrequesttreeview_QuerySendFailed">
        <source>Your answer couldn't be sent. Please try again.</source>
        <translation>Your answer couldn't be sent. Please try again.</translation>
    </message>
    <message id="ID_SettingsWidget_EnterseparatePassword">
        <source>Enter the Separate Password</source>
        <translation>Enter the Separate Password</translation>
    </message>
    <message id="ID_Today">
        <source>Today</source>
        <translation>Today</translation>
    </message>
    <message id="ID_Agree">
        <source>Agree</source>
        <translation>Agree</translation>
    </message>
    <message id="ID_friendrequest_Refuse">
        <source>Refuse</source>
        <translation>Refuse</translation>
    </message>
    <message id="ID_friendrequest_Agreed">
        <source>Agreed</source>
        <translation>Agreed</translation>
    </message>
    <message id="ID_friendrequest_Rejected">
        <source>Rejected</source>
        <translation>Rejected</translation>
    </message>
    <message id="ID_friendrequest_WaitingVerify">
        <source>Waiting</source>
        <translation>Waiting</translation>
    </message>
    <message id="ID_friendrequest_Overdue">
        <source>Expired</source>
        <translation>Expired</translation>
    </message>
    <message id="ID_friendrequest_AgreeFriendRequest">
        <source>You agreed to the friend request</source>
        <translation>You agreed to the friend request</translation>
    </message>
    <message id="ID_friendrequest_FriendRequestHasBeenAgreed">
        <source>Your friend request has been agreed</source>
        <translation>Your friend request has been agreed</translation>
    </message>
    <message id="ID_friendrequest_RejectFriendRequest">
        <source>You refused the friend request</source>
        <translation>You refused the friend request</translation>
    </message>
    <message id="ID_friendrequest_FriendRequestHasBeenReject">
        <source>Your friend request has been refused</source>
        <translation>Your friend request has been refused</translation>
    </message>
</context>
</TS>
