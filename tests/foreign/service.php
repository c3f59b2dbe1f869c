<?php
// A service that shares no code with the plug-in: PHP's SoapServer, driven by the WSDL of the contract. It writes down
// what it has understood of each request, one JSON object a line, and answers with fixed results.
//
// SoapServer writes every name with a prefix, and faults as SOAP-ENV:Fault; the real service writes its results without
// one, and faults as s:Fault. So replies are rewritten into the real service's form. They are left as PHP makes them
// below the path /raw.
//
// Started as: VANTIRO_WSDL=... VANTIRO_RECORD=... php -S 127.0.0.1:PORT service.php

declare(strict_types=1);

const SERVICE_NAMESPACE = 'http://tempuri.org/';

final class LoyaltyService
{
    public function IsCardValid(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        if ($request->discountCardNumber === 'refused') {
            throw new SoapFault('Client', 'Карта <заблокирована> %1');
        }
        return ['IsCardValidResult' => $request->discountCardNumber === '9000000001'];
    }

    public function GetCardBalance(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['GetCardBalanceResult' => '<Card><Balance Value="1234,50"/></Card>'];
    }

    public function Ping(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['PingResult' => true];
    }

    public function GetDiscounts(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['GetDiscountsResult' => '<Answer><Cheque><Discount DiscountID="7" Amount="9.80"/></Cheque>'
            . '<ChequeLine ChequeLineNo="1"><Discount DiscountID="8" Type="Percent" Percent="10" Amount="17"/>'
            . '</ChequeLine></Answer>'];
    }

    public function GetMessages(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['GetMessagesResult' => '<Messages><Msg Device="2" Body="Скидка 10% &amp; баллы"/></Messages>'];
    }

    public function GetCardDiscountAmount(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['GetCardDiscountAmountResult' => '150.75'];
    }

    public function SubtractBonus45(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['SubtractBonus45Result' => '<Answer><ChequeLine ChequeLineNo="1" Amount="100.5"/></Answer>'];
    }

    public function CancelSubtractBonus(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return [];
    }

    public function Accrual(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['AccrualResult' => '<doc><center><f2>Спасибо</f2></center></doc>'];
    }

    public function OfflineAccrual(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['OfflineAccrualResult' => ''];
    }

    public function GetVerifyCode(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['GetVerifyCodeResult' => '1234:5555'];
    }

    public function IsCouponValid(stdClass $request): array
    {
        $this->record(__FUNCTION__, $request);
        return ['IsCouponValidResult' => true];
    }

    private function record(string $operation, stdClass $request): void
    {
        $headers = getallheaders();
        $understood = [
            'operation' => $operation,
            'action' => $headers['SOAPAction'] ?? '',
            'contentType' => $headers['Content-Type'] ?? '',
            'authorization' => $headers['Authorization'] ?? '',
            'parameters' => (object) get_object_vars($request),
        ];
        $line = json_encode($understood, JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_THROW_ON_ERROR);
        file_put_contents(getenv('VANTIRO_RECORD'), $line . "\n", FILE_APPEND);
    }
}

function inServiceForm(string $reply): string
{
    // SoapServer escapes each "<" of a text, so whatever looks like a tag is one.
    return preg_replace(
        [
            '~^<\?xml[^>]*>\s*~',
            '~ xmlns:ns1="[^"]*"~',
            '~<ns1:(\w+Response)~',
            '~<(/?)ns1:~',
            '~(</?| xmlns:|<faultcode>)SOAP-ENV(?=[:=])~',
        ],
        ['', '', '<$1 xmlns="' . SERVICE_NAMESPACE . '"', '<$1', '$1s'],
        $reply
    );
}

function finished(string $reply): string
{
    if ($reply === '' || str_starts_with($_SERVER['REQUEST_URI'], '/raw')) {
        return $reply;
    }
    $rewritten = inServiceForm($reply);
    header('Content-Length: ' . strlen($rewritten)); // in place of the one that SoapServer has set
    return $rewritten;
}

// As a callback, since SoapServer ends the script on its own after a fault.
ob_start('finished');

$server = new SoapServer(getenv('VANTIRO_WSDL'), ['cache_wsdl' => WSDL_CACHE_NONE, 'encoding' => 'UTF-8']);
$server->setObject(new LoyaltyService());
$server->handle();
